#include <windows.h>

#include <cstddef>
#include <cstdint>

extern "C" {

extern std::uintptr_t __stack_chk_guard;

__declspec(dllexport) std::uintptr_t guard_number() {
    return __stack_chk_guard;
}

/// Writes as many zeros as it is told into room for 16 of them, which a build that traps on undefined
/// behaviour must not stop.
__attribute__((no_sanitize("undefined"))) __declspec(dllexport) void write_zeros(std::size_t count) {
    volatile std::byte room[16];
    volatile std::byte* place = room;
    for (std::size_t i = 0; i < count; ++i) {
        *place++ = std::byte{0};
    }
}
}
