#include "ovufc/ipc/drvport/mapping.h"

#include <windows.h>

namespace ov::ipc::drvport::details::mapping {

namespace {

constexpr DWORD writable_pages =
    PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD readable_pages = writable_pages | PAGE_READONLY | PAGE_EXECUTE_READ;

bool is_accessible(const MEMORY_BASIC_INFORMATION& region, DWORD protections) noexcept {
    return region.State == MEM_COMMIT && (region.Protect & PAGE_GUARD) == 0 &&
           (region.Protect & protections) != 0;
}

// Pages of another protection are another region to the system, within one mapping too.
template <class Qualifies>
std::uint64_t qualifying_bytes(const volatile void* start, Qualifies qualifies) noexcept {
    const auto* const first = static_cast<const char*>(const_cast<const void*>(start));
    const char* end = first;
    const void* base = nullptr;
    MEMORY_BASIC_INFORMATION region{};
    while (VirtualQuery(end, &region, sizeof region) != 0 && qualifies(region) &&
           (base == nullptr || region.AllocationBase == base)) {
        base = region.AllocationBase;
        end = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
    }
    return static_cast<std::uint64_t>(end - first);
}

}  // namespace

std::uint64_t mapped_bytes(const volatile void* start) noexcept {
    return qualifying_bytes(start, [](const auto& region) { return region.State != MEM_FREE; });
}

std::uint64_t readable_bytes(const volatile void* start) noexcept {
    return qualifying_bytes(start, [](const auto& region) { return is_accessible(region, readable_pages); });
}

std::uint64_t writable_bytes(const volatile void* start) noexcept {
    return qualifying_bytes(start, [](const auto& region) { return is_accessible(region, writable_pages); });
}

}  // namespace ov::ipc::drvport::details::mapping
