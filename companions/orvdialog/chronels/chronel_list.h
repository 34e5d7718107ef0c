#pragma once

#include <cstddef>
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

/// One earlier version of a file, read in full.
struct chronel {
    std::string identifier;  // the record's whole JSON text, as the driver wants it back
    std::wstring file_name;  // "fileName"
    std::wstring type;       // "type", in words
};

/// The earlier versions of a file, as a list text tells them.
///
/// A list is a JSON array of records, or an object with such an array under "chronels". A record is an object
/// with at least "fileName", "cloneFileName" and "type"; anything else in the array is left out.
///
/// Reads the text once for what is sorted by, in one pass and without a tree of it in memory; the rest of a
/// record is read when it is asked for. So the text must stay where it is. Throws std::bad_alloc only.
class chronel_list {
  public:
    /// Empty optional: the text is not such a list (not JSON, not UTF-8, nested too deep).
    [[nodiscard]] static std::optional<chronel_list> read(std::string_view text);

    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
    /// "time", else "createdOn": file time, 100 ns since 1601, UTC.
    [[nodiscard]] std::optional<std::uint64_t> time(std::size_t place) const noexcept {
        return entries_[place].time;
    }
    /// "size".
    [[nodiscard]] std::optional<std::uint64_t> size_bytes(std::size_t place) const noexcept {
        return entries_[place].size_bytes;
    }
    /// Everything that is told of one version. Empty if the text has changed meanwhile.
    [[nodiscard]] chronel at(std::size_t place) const;

  private:
    friend class chronel_list_reader;

    struct entry {
        std::uint32_t begin;  // in the text
        std::uint32_t length;
        std::optional<std::uint64_t> time;
        std::optional<std::uint64_t> size_bytes;
    };

    std::string_view text_;
    std::vector<entry> entries_;
};

}  // namespace ov::dialog
