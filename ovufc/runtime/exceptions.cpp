#include <new>

// Exceptions in flight, kept by the DLL itself in place of the C++ runtime of mingw-w64: the four functions
// at the end take the place of the runtime's own of the same names.
//
// The runtime's own are made for a program, which may end when it is out of memory. They take 73 KiB of
// heap when the DLL is loaded, and never give them back; they take a TLS index at the first throw and never
// give it back, so that a host is ended after some thousand loads; they take memory at the first throw of
// each thread and end the process when there is none, so that running out of memory would not come out as
// E_OUTOFMEMORY. Here nothing is taken before it is needed, and what cannot be had is lent from a reserve
// that is part of the file.
//
// Each of these was seen: Unload.thousands_of_loads_cost_the_host_nothing shows what stays behind, the tests
// OutOfMemory.* (all in tests/module/frame) that a host is ended, also with more threads than the reserve,
// and Exceptions.* (tests/unit/ovufc/runtime) that each thread needs a record of its own.
//
// Other compilers' runtimes are made for DLLs too.
#ifdef __GLIBCXX__

#include <windows.h>
#include <cxxabi.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

/// `__cxa_eh_globals` of the Itanium C++ ABI, 2.2.2: https://itanium-cxx-abi.github.io/cxx-abi/abi-eh.html
struct exception_record {
    void* caught_exceptions;
    unsigned int uncaught_exceptions;
};

/// What one thread has in flight, from the first exception object that it makes to the last that it frees.
struct thread_place {
    std::atomic<DWORD> thread_id;  // 0: nobody's. All else is touched by that thread alone.
    unsigned int exceptions;
    exception_record record;
};

/// As many threads may handle exceptions at the same moment; one more waits for one of them to be done.
constinit std::array<thread_place, 64> places{};

/// What a thread without exceptions reads, and nobody writes.
constinit exception_record nothing_in_flight{};

/// Before each exception object the runtime keeps its own notes, all zero at first (2.2.1). This is room for
/// them on every target; objects stay aligned.
constexpr std::size_t notes_bytes = 256;
static_assert(notes_bytes % alignof(std::max_align_t) == 0);

struct reserved_block {
    alignas(std::max_align_t) std::array<std::byte, notes_bytes + 128> bytes;
    std::atomic<bool> taken;
};

/// For exceptions that find no memory. std::bad_alloc is 8 bytes, the largest one that the product throws
/// below 100.
constinit std::array<reserved_block, 32> reserve{};

thread_place* place_of(DWORD thread_id) noexcept {
    auto* const found = std::find_if(places.begin(), places.end(), [thread_id](const thread_place& place) {
        return place.thread_id.load(std::memory_order_relaxed) == thread_id;
    });
    return found == places.end() ? nullptr : found;
}

thread_place* take_free_place(DWORD thread_id) noexcept {
    auto* const taken = std::find_if(places.begin(), places.end(), [thread_id](thread_place& place) {
        DWORD nobody = 0;
        return place.thread_id.compare_exchange_strong(nobody, thread_id);
    });
    return taken == places.end() ? nullptr : taken;
}

void enter_exception() noexcept {
    const DWORD self = GetCurrentThreadId();
    thread_place* place = place_of(self);
    while (place == nullptr) {
        place = take_free_place(self);
        if (place == nullptr) {
            SwitchToThread();
        }
    }
    ++place->exceptions;
}

void leave_exception() noexcept {
    thread_place* const place = place_of(GetCurrentThreadId());
    if (place != nullptr && --place->exceptions == 0) {
        place->record = {};
        place->thread_id.store(0, std::memory_order_release);
    }
}

void* lend(std::size_t bytes) noexcept {
    if (bytes > sizeof(reserved_block::bytes)) {
        std::terminate();  // as the runtime does when its own reserve does not suffice
    }
    auto* const lent = std::find_if(reserve.begin(), reserve.end(),
                                    [](reserved_block& block) { return !block.taken.exchange(true); });
    return lent == reserve.end() ? nullptr : lent->bytes.data();
}

void give_back(void* memory) noexcept {
    auto* const lent = std::find_if(reserve.begin(), reserve.end(), [memory](const reserved_block& block) {
        return block.bytes.data() == memory;
    });
    if (lent != reserve.end()) {
        lent->taken = false;
    } else {
        std::free(memory);  // NOLINT(*-no-malloc)
    }
}

}  // namespace

namespace __cxxabiv1 {

extern "C" void* __cxa_allocate_exception(std::size_t object_bytes) noexcept {
    enter_exception();
    const std::size_t bytes = notes_bytes + object_bytes;
    void* memory = nullptr;
    while (memory == nullptr) {
        memory = std::malloc(bytes);  // NOLINT(*-no-malloc)
        if (memory == nullptr) {
            memory = lend(bytes);
        }
        if (memory == nullptr) {
            SwitchToThread();  // each block comes back as soon as its exception has been handled
        }
    }
    std::memset(memory, 0, notes_bytes);
    return static_cast<std::byte*>(memory) + notes_bytes;
}

extern "C" void __cxa_free_exception(void* object) noexcept {
    give_back(static_cast<std::byte*>(object) - notes_bytes);
    leave_exception();
}

extern "C" __cxa_eh_globals* __cxa_get_globals() noexcept {
    thread_place* const place = place_of(GetCurrentThreadId());
    return reinterpret_cast<__cxa_eh_globals*>(place == nullptr ? &nothing_in_flight : &place->record);
}

extern "C" __cxa_eh_globals* __cxa_get_globals_fast() noexcept {
    return __cxa_get_globals();
}

}  // namespace __cxxabiv1

#endif
