#include "namespace/locations/protected_locations.h"

#include <cstdint>

#include "module/state/module_state.h"
#include "ovufc/ipc/drvport/client.h"
#include "ovufc/win/srw_lock.h"
#include "service/calls.h"

namespace ov::name_space {

namespace {

struct protected_locations_cache {
    std::string text;
    std::uint32_t generation = 0;  // the driver's, when `text` was fetched
};

protected_locations_cache cache;

}  // namespace

void refresh_protected_locations() noexcept {
    const win::exclusive_lock lock(module_state::cacheLock);
    const std::uint32_t generation = ipc::drvport::connect() ? ipc::drvport::generation() : 0;
    if (generation != 0 && (generation != cache.generation || cache.text.empty())) {
        cache.text = service::get_protected_folders();
        cache.generation = generation;
    }
}

std::string copy_protected_locations() {
    const win::shared_lock lock(module_state::cacheLock);
    return cache.text;
}

}  // namespace ov::name_space
