#pragma once

#include <windows.h>

namespace ov::test {

/// How much of something to do: `quick` in the plain suite, `soak` when ./test.sh --soak has asked for it.
[[nodiscard]] inline unsigned effort(unsigned quick, unsigned soak) noexcept {
    static const bool is_soak = GetEnvironmentVariableW(L"ORV_SOAK", nullptr, 0) != 0;
    return is_soak ? soak : quick;
}

}  // namespace ov::test
