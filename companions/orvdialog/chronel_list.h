#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ov::dialog {

/// The longest list text that is read: what the driver's files may hold.
inline constexpr std::size_t longest_list_bytes = std::size_t{20} * 1024 * 1024;
/// Arrays and objects may stand so deep in each other; real lists need three.
inline constexpr std::size_t deepest_nesting = 16;

/// One earlier version of a file.
struct chronel {
    std::string identifier;                   // the record's whole JSON text, as the driver wants it back
    std::wstring file_name;                   // "fileName"
    std::wstring type;                        // "type", in words
    std::optional<std::uint64_t> time;        // "time", else "createdOn": file time, 100 ns since 1601, UTC
    std::optional<std::uint64_t> size_bytes;  // "size"
};

/// The chronels of a list text, newest first as far as their times are known.
///
/// A list is a JSON array of records, or an object with such an array under "chronels". A record is an object
/// with at least "fileName", "cloneFileName" and "type"; anything else in the array is left out. Empty
/// optional: the text is no such list (not JSON, not UTF-8, nested too deep). Throws std::bad_alloc only.
[[nodiscard]] std::optional<std::vector<chronel>> read_chronel_list(std::string_view text);

}  // namespace ov::dialog
