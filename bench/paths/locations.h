#pragma once

#include <string>
#include <string_view>

namespace ov::bench {

/// A protected-locations document: two thirds local folders, the rest spread evenly over the managed and the
/// cloud folders. No two `seeds` give the same paths.
[[nodiscard]] std::string locations_document(int locations, int seed);

}  // namespace ov::bench
