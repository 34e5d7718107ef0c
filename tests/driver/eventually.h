#pragma once

#include <windows.h>

namespace ov::test {

/// True as soon as `condition` is, false when it is not within five seconds: for what the driver does in its
/// own time.
template <class Condition>
[[nodiscard]] bool eventually(Condition&& condition) {
    constexpr DWORD patience_ms = 5000;
    constexpr DWORD look_again_ms = 5;
    for (const DWORD started = GetTickCount(); GetTickCount() - started < patience_ms; Sleep(look_again_ms)) {
        if (condition()) {
            return true;
        }
    }
    return condition();
}

}  // namespace ov::test
