#pragma once

#include <windows.h>

namespace ov::test {

/// What all threads of this process have been given of the processors so far, ended ones too, in
/// microseconds. The system counts in steps, of 10 ms under Wine.
[[nodiscard]] inline LONGLONG processor_time_us() noexcept {
    FILETIME made{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &made, &ended, &kernel, &user);
    const auto ticks = [](const FILETIME& time) {
        return (static_cast<LONGLONG>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    };
    constexpr LONGLONG ticks_a_us = 10;
    return (ticks(kernel) + ticks(user)) / ticks_a_us;
}

}  // namespace ov::test
