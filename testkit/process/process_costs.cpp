#include "testkit/process/process_costs.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

namespace ov::test {

namespace {

constexpr std::size_t page_bytes = 4096;

template <class Allocate, class Free>
std::size_t indexes_left(Allocate allocate, Free give_back) {
    std::vector<DWORD> taken;
    for (DWORD index = allocate(); index != TLS_OUT_OF_INDEXES; index = allocate()) {
        taken.push_back(index);
    }
    std::for_each(taken.begin(), taken.end(), give_back);
    return taken.size();
}

// As many as there could be of either kind, and more: what counts is the difference.
constexpr std::size_t index_limit = 1U << 16;

std::size_t tls_indexes() {
    return index_limit - indexes_left([] { return TlsAlloc(); }, [](DWORD index) { TlsFree(index); });
}

std::size_t fls_indexes() {
    return index_limit - indexes_left([] { return FlsAlloc(nullptr); }, [](DWORD index) { FlsFree(index); });
}

std::size_t busy_blocks(HANDLE heap) {
    std::size_t blocks = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry)) {
        blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? 1 : 0;
    }
    HeapUnlock(heap);
    return blocks;
}

std::size_t heap_blocks() {
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    std::size_t blocks = 0;
    for (DWORD i = 0; i < std::min<DWORD>(count, static_cast<DWORD>(heaps.size())); ++i) {
        blocks += busy_blocks(heaps[i]);
    }
    return blocks;
}

std::size_t private_pages() {
    std::size_t bytes = 0;
    std::uintptr_t next = 0;
    MEMORY_BASIC_INFORMATION region{};
    while (VirtualQuery(reinterpret_cast<const void*>(next), &region, sizeof region) != 0) {
        bytes += region.State == MEM_COMMIT && region.Type == MEM_PRIVATE ? region.RegionSize : 0;
        next = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
    }
    return bytes / page_bytes;
}

// The lowest numbers that a handle can have are tried, of which a new one is given the first that is free.
// Nothing else counts them: Wine's own counter stands still, and its list of all handles goes astray while a
// program starts.
std::size_t handles() {
    constexpr std::uintptr_t between_handles = 4;
    constexpr std::size_t most = 1024;
    std::size_t open = 0;
    for (std::uintptr_t number = 1; number <= most; ++number) {
        DWORD flags = 0;
        open += GetHandleInformation(reinterpret_cast<HANDLE>(number * between_handles), &flags) ? 1 : 0;
    }
    if (open > most / 2) {
        throw std::runtime_error("this process has more handles than are looked for");
    }
    return open;
}

// GDI objects and menus are known to Wine by the lower half of their handles alone.
std::size_t gdi_objects() {
    constexpr std::uintptr_t most = 1U << 14;
    std::size_t objects = 0;
    for (std::uintptr_t number = 0; number < most; ++number) {
        objects += GetObjectType(reinterpret_cast<HGDIOBJ>(number)) != 0 ? 1 : 0;
    }
    return objects;
}

std::size_t menus() {
    constexpr std::uintptr_t most = 1U << 16;
    std::size_t menus = 0;
    for (std::uintptr_t number = 0; number < most; number += 2) {
        menus += IsMenu(reinterpret_cast<HMENU>(number)) ? 1 : 0;
    }
    return menus;
}

}  // namespace

process_costs::process_costs() {
    amounts_.reserve(7);  // so that counting changes nothing of what is counted
    amounts_.push_back({"TLS indexes", tls_indexes()});
    amounts_.push_back({"FLS indexes", fls_indexes()});
    amounts_.push_back({"handles", handles()});
    amounts_.push_back({"GDI objects", gdi_objects()});
    amounts_.push_back({"menus", menus()});
    amounts_.push_back({"heap blocks", heap_blocks()});
    amounts_.push_back({"private pages", private_pages()});
}

std::vector<std::string> process_costs::grown_since(const process_costs& before,
                                                    std::size_t tolerance) const {
    std::vector<std::string> grown;
    for (std::size_t i = 0; i < amounts_.size(); ++i) {
        if (amounts_[i].taken > before.amounts_[i].taken + tolerance) {
            grown.push_back(std::string(amounts_[i].kind) + ": " + std::to_string(before.amounts_[i].taken) +
                            " before, " + std::to_string(amounts_[i].taken) + " after");
        }
    }
    return grown;
}

}  // namespace ov::test
