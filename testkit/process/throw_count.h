#pragma once

#include <cstddef>

namespace ov::test {

/// How many exceptions this program has thrown so far, on any thread, whoever caught them. For programs that
/// link `throw_count`, which puts itself before the C++ runtime's throw at link time.
[[nodiscard]] std::size_t throws_so_far() noexcept;

}  // namespace ov::test
