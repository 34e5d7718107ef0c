#pragma once

#include <string>

namespace ov::shell {

/// Whether the driver keeps the history of the file at `path`: it then carries the driver's reparse point.
/// False as well when the file cannot be opened. The file itself is opened, not what the point leads to.
[[nodiscard]] bool is_tracked_file(const std::wstring& path) noexcept;

}  // namespace ov::shell
