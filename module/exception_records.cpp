#include <new>

// Each thread's record of the exceptions that it has in flight, kept by the module in place of the C++
// runtime of mingw-w64: the two functions at the end take the place of the runtime's own of the same names.
//
// The runtime's own keep the record in emulated thread-local storage, which a DLL inside someone else's
// process cannot afford: it takes memory at the first throw of each thread and ends the process when there is
// none, so that running out of memory would not come out as E_OUTOFMEMORY; and it takes a TLS index for each
// load of the module and never gives it back, so that the host is ended after some thousand loads. Another
// compiler brings a runtime that knows DLLs.
#ifdef __GLIBCXX__

#include <windows.h>
#include <cxxabi.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>

namespace {

/// `__cxa_eh_globals` of the Itanium C++ ABI, 2.2.2: https://itanium-cxx-abi.github.io/cxx-abi/abi-eh.html
struct exception_record {
    void* caught_exceptions;
    unsigned int uncaught_exceptions;
};

struct reserved_record {
    exception_record record;
    std::atomic<bool> taken;
};

// As many threads may have thrown, and still live, before a record needs memory from the process heap.
constexpr std::size_t reserve_size = 64;
constinit std::array<reserved_record, reserve_size> reserve{};

exception_record* new_record() noexcept {
    for (reserved_record& candidate : reserve) {
        if (!candidate.taken.exchange(true)) {
            candidate.record = {};
            return &candidate.record;
        }
    }
    return static_cast<exception_record*>(
        HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(exception_record)));
}

// The system calls it at the end of a thread or fiber, and for all of them when the index is freed.
void WINAPI give_back(void* record) noexcept {
    const auto reserved = std::find_if(reserve.begin(), reserve.end(), [record](const reserved_record& one) {
        return &one.record == record;
    });
    if (reserved != reserve.end()) {
        reserved->taken = false;
    } else {
        HeapFree(GetProcessHeap(), 0, record);
    }
}

/// The fiber-local index under which each thread finds its record: taken at the first throw, as most loads of
/// the module never throw, and given back when the module is unloaded.
class record_index {
  public:
    constexpr record_index() noexcept = default;
    record_index(const record_index&) = delete;
    record_index& operator=(const record_index&) = delete;
    ~record_index() {
        const DWORD taken = index_.exchange(FLS_OUT_OF_INDEXES);
        if (taken != FLS_OUT_OF_INDEXES) {
            FlsFree(taken);
        }
    }

    [[nodiscard]] DWORD get() noexcept {
        DWORD index = index_.load();
        if (index != FLS_OUT_OF_INDEXES) {
            return index;
        }
        const DWORD made = FlsAlloc(&give_back);
        if (index_.compare_exchange_strong(index, made)) {
            return made;
        }
        // Two threads throw for the first time: the other one's index is there already.
        FlsFree(made);
        return index;
    }

  private:
    std::atomic<DWORD> index_{FLS_OUT_OF_INDEXES};
};

// Of the first to be constructed and so of the last to go: no other destructor throws behind its back.
[[gnu::init_priority(101)]] record_index records;

exception_record* record_of_this_thread() noexcept {
    const DWORD last_error = GetLastError();
    const DWORD index = records.get();
    auto* record = static_cast<exception_record*>(FlsGetValue(index));
    if (record == nullptr) {
        record = new_record();
        if (record == nullptr || FlsSetValue(index, record) == FALSE) {
            std::abort();  // no index or no memory at all: there is no way to report an error
        }
    }
    SetLastError(last_error);
    return record;
}

}  // namespace

namespace __cxxabiv1 {

extern "C" __cxa_eh_globals* __cxa_get_globals() noexcept {
    return reinterpret_cast<__cxa_eh_globals*>(record_of_this_thread());
}

extern "C" __cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}

}  // namespace __cxxabiv1

#endif
