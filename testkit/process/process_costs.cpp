#include "testkit/process/process_costs.h"

#include <windows.h>
#include <winternl.h>

#include <algorithm>
#include <array>
#include <cstddef>
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

// The documented part of the answer to SystemHandleInformation: a count, then an entry for each handle there
// is.
struct handle_entry {
    USHORT process_id;
    USHORT back_trace;
    UCHAR type;
    UCHAR attributes;
    USHORT value;
    void* object;
    ULONG access;
};
struct handle_table {
    ULONG count;
    handle_entry first;
};

std::size_t handles() {
    constexpr auto system_handle_information = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    constexpr NTSTATUS too_small = static_cast<NTSTATUS>(0xC0000004);
    std::vector<std::byte> answer(1U << 20);
    NTSTATUS status = too_small;
    while (status == too_small) {
        answer.resize(answer.size() * 2);
        status = NtQuerySystemInformation(system_handle_information, answer.data(),
                                          static_cast<ULONG>(answer.size()), nullptr);
    }
    if (status != 0) {
        throw std::runtime_error("the handles of this process cannot be listed");
    }
    const auto* const table = reinterpret_cast<const handle_table*>(answer.data());
    const auto* const first =
        reinterpret_cast<const handle_entry*>(answer.data() + offsetof(handle_table, first));
    return static_cast<std::size_t>(std::count_if(first, first + table->count, [](const handle_entry& entry) {
        return entry.process_id == static_cast<USHORT>(GetCurrentProcessId());
    }));
}

}  // namespace

process_costs::process_costs() {
    amounts_.reserve(5);  // so that counting changes nothing of what is counted
    amounts_.push_back({"TLS indexes", tls_indexes()});
    amounts_.push_back({"FLS indexes", fls_indexes()});
    amounts_.push_back({"handles", handles()});
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
