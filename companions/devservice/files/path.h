#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ov::devservice {

/// A path from outside in the one form that the service keeps: absolute, backslashes, no "." or "..", no
/// trailing backslash (a drive's root keeps its own). None for anything else: a relative path, a device, a
/// stream, a wildcard, a control character, more than 32,000 characters.
[[nodiscard]] std::optional<std::wstring> clean_path(std::wstring_view path);

/// The form that Windows takes without the 260-character limit. `path` is a clean path.
[[nodiscard]] std::wstring long_form(const std::wstring& path);

/// Letter case does not count, as Windows compares file names (ordinal).
[[nodiscard]] bool same_path(std::wstring_view left, std::wstring_view right) noexcept;

/// True for the folder itself and for everything below it.
[[nodiscard]] bool is_within(std::wstring_view path, std::wstring_view folder) noexcept;

/// What is left of `path` below `folder`; empty for the folder itself. Only when is_within(path, folder).
[[nodiscard]] std::wstring relative_to(std::wstring_view path, std::wstring_view folder);

/// `relative` below `folder`; either may be empty.
[[nodiscard]] std::wstring joined(std::wstring_view folder, std::wstring_view relative);

/// True for a path that stays below the folder it is joined to: no root, no "..", no stream, no empty part.
[[nodiscard]] bool is_safe_relative(std::wstring_view relative);

/// The last part of a path, and what stands before it (without its backslash).
[[nodiscard]] std::wstring base_name(std::wstring_view path);
[[nodiscard]] std::wstring parent_of(std::wstring_view path);

/// The folder that holds what stands at a clean path; a volume's root for what stands there directly.
[[nodiscard]] std::wstring parent_folder(std::wstring clean);

/// True for "C:\" and for "\\server\share".
[[nodiscard]] bool is_volume_root(const std::wstring& clean) noexcept;

/// Order of relative paths in maps; letter case does not count.
struct path_less {
    using is_transparent = void;
    [[nodiscard]] bool operator()(std::wstring_view left, std::wstring_view right) const noexcept;
};

}  // namespace ov::devservice
