#pragma once

#include <cstddef>
#include <string_view>

#include "ovufc/json.h"

namespace ov {

/// How many arrays and objects may be open at once in a text that comes from outside. The library parses any
/// depth, but copies and writes values recursively, a few hundred bytes of stack a level: this many fit the
/// smallest stack that a host gives its threads, and no document of the product comes near it.
inline constexpr std::size_t json_depth_limit = 256;

/// The value of a JSON text from outside (UTF-8, a leading byte-order mark allowed). A text that is not JSON,
/// holds a number beyond a double's range, or nests deeper than the limit gives a discarded value
/// (`is_discarded()`). Throws std::bad_alloc only.
[[nodiscard]] json parse_bounded(std::string_view text);

/// As above, but throws the library's exceptions: its parse_error for what is not JSON
/// or nests too deep, its out_of_range for a number beyond a double's range.
[[nodiscard]] json parse_bounded_or_throw(std::string_view text);

}  // namespace ov
