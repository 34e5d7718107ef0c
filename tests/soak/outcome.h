#pragma once

#include <windows.h>

#include <array>
#include <cstdio>
#include <string>

#include "tests/soak/effort.h"

namespace ov::test {

/// What a path came to: the results of its steps, in their order.
using outcome = std::string;

/// So many calls of one function fail in turn on a path.
[[nodiscard]] inline int most_calls_of_one_function() {
    return static_cast<int>(effort(2, 6));
}

[[nodiscard]] inline outcome in_hex(HRESULT result) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), " %lx", static_cast<unsigned long>(result));
    return text.data();
}

}  // namespace ov::test
