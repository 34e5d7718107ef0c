#include "namespace/locations/protected_locations.h"

#include <atomic>
#include <cstdint>
#include <new>
#include <string>
#include <utility>

#include "module/state/module_state.h"
#include "ovufc/ipc/drvport/client.h"
#include "ovufc/noncopyable.h"
#include "ovufc/win/srw_lock.h"
#include "service/calls.h"

namespace ov::name_space {

namespace {

// One text, and what the first folder that sees it has read from it.
class fetched_text : private noncopyable {
  public:
    explicit fetched_text(std::string text) noexcept : text_(std::move(text)) {}
    ~fetched_text() { const std::unique_ptr<const location_document> owned(document_); }

    [[nodiscard]] bool is_empty() const noexcept { return text_.empty(); }

    // Null when there is no memory to keep it in.
    [[nodiscard]] const location_document* document() noexcept {
        if (const location_document* read = document_.load(std::memory_order_acquire)) {
            return read;
        }
        std::unique_ptr<const location_document> read(new (std::nothrow)
                                                          location_document(read_location_document(text_)));
        if (read == nullptr || read->ran_out_of_memory) {
            return nullptr;
        }
        // Folders that are made at the same moment may read the same text twice; the first one's is kept.
        const location_document* kept = nullptr;
        return document_.compare_exchange_strong(kept, read.get(), std::memory_order_acq_rel) ? read.release()
                                                                                              : kept;
    }

  private:
    const std::string text_;
    std::atomic<const location_document*> document_ = nullptr;
};

struct protected_locations_cache {
    std::shared_ptr<fetched_text> text;  // null like an empty one
    std::uint32_t generation = 0;        // the driver's, when `text` was fetched
};

protected_locations_cache cache;

std::shared_ptr<fetched_text> fetch() noexcept {
    try {
        return std::make_shared<fetched_text>(service::get_protected_folders());
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::shared_ptr<fetched_text> cached_text() noexcept {
    const win::shared_lock lock(module_state::cacheLock);
    return cache.text;
}

}  // namespace

void refresh_protected_locations() noexcept {
    const win::exclusive_lock lock(module_state::cacheLock);
    const std::uint32_t generation = ipc::drvport::connect() ? ipc::drvport::generation() : 0;
    if (generation != 0 &&
        (generation != cache.generation || cache.text == nullptr || cache.text->is_empty())) {
        cache.text = fetch();
        cache.generation = generation;
    }
}

std::shared_ptr<const location_document> protected_locations() noexcept {
    static const location_document unreadable = read_location_document({});
    const std::shared_ptr<fetched_text> text = cached_text();
    const location_document* const document = text != nullptr ? text->document() : nullptr;
    return {text, document != nullptr ? document : &unreadable};
}

}  // namespace ov::name_space
