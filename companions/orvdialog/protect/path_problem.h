#pragma once

#include <cstddef>
#include <string>

namespace ov::dialog {

/// Why something cannot be protected.
enum class path_problem {
    none,
    no_full_path,  ///< not of the form C:\...; an empty one above all
    root,          ///< of a volume, by letter or where one is mounted
    network,       ///< the driver has no reach there
    too_long,
    gone,  ///< nothing is there
};

/// The path as the system writes it: without blanks and quotation marks around it, which come along when one
/// is pasted, nor "..", "/" or a backslash at the end. Empty for an empty one. Throws only std::bad_alloc.
[[nodiscard]] std::wstring tidy_path(const std::wstring& typed);

/// What is wrong with a tidy path that may have `limit_chars`. Asks the disk, never the network. Any thread.
[[nodiscard]] path_problem problem_of(const std::wstring& path, std::size_t limit_chars) noexcept;

}  // namespace ov::dialog
