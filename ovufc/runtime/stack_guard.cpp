#include "ovufc/runtime/stack_guard.h"

// What -fstack-protector-strong needs, in place of GCC's own library for it, which opens a cryptographic
// provider in each process at load. Visual C++ has its own.
#ifdef __MINGW32__

#include <windows.h>

#include <cstdint>
#include <initializer_list>

/// The compiler knows these two by name. What is linked without dll_runtime, tests that is, keeps this
/// number.
extern "C" {
extern std::uintptr_t __stack_chk_guard;
std::uintptr_t __stack_chk_guard = static_cast<std::uintptr_t>(0x2B992DDFA2320DE3);

/// Nothing of the process can be trusted any more, its exception handlers least of all: the system ends it
/// without asking them, as it does for code of Visual C++.
[[noreturn]] void __stack_chk_fail() {
#if defined(__x86_64__) || defined(__i386__)
    __asm__ volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
#endif
    __builtin_trap();
}
}

namespace {

/// Spreads each bit of `number` over all of it (the last step of the generator SplitMix64).
std::uint64_t spread(std::uint64_t number) {
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
    return number ^ (number >> 31);
}

}  // namespace

namespace ov::runtime {

/// Made of what Visual C++ makes its own of, and of where this image and this stack were put: all that can be
/// had while a DLL is being loaded, when no library but kernel32 may be called.
[[gnu::no_stack_protector]] void draw_stack_guard() noexcept {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    std::uint64_t drawn = 0;
    for (const std::uint64_t part : {std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime,
                                     static_cast<std::uint64_t>(counter.QuadPart),
                                     std::uint64_t{GetCurrentProcessId()} << 32 | GetCurrentThreadId(),
                                     std::uint64_t{reinterpret_cast<std::uintptr_t>(&__stack_chk_guard)},
                                     std::uint64_t{reinterpret_cast<std::uintptr_t>(&now)}}) {
        drawn = spread(drawn ^ part);
    }
    __stack_chk_guard = static_cast<std::uintptr_t>(drawn);
}

}  // namespace ov::runtime

#else

namespace ov::runtime {

void draw_stack_guard() noexcept {}

}  // namespace ov::runtime

#endif
