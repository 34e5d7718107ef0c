#pragma once

#include <windows.h>

#include <string>

namespace ov::devservice {

/// The mark of a tracked file, by which the shell's menu knows it: a reparse point with a tag of its own and
/// our GUID. It changes nothing of the content, but a marked file opens as before only where a file-system
/// filter knows the mark; without one the system refuses to open it. So no mark stays that was not tried.
inline constexpr DWORD tracked_file_tag = 0x51;

/// True when these attributes and this tag are those of a marked file, which is a file and not a link.
[[nodiscard]] constexpr bool is_marked_file(DWORD attributes, DWORD tag) noexcept {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
           tag == tracked_file_tag;
}

/// True for a file at `path` that bears the mark.
[[nodiscard]] bool is_marked(const std::wstring& path);

/// Marks the file at `path`, which is open as `file` for GENERIC_READ and FILE_WRITE_ATTRIBUTES with
/// FILE_FLAG_OPEN_REPARSE_POINT. ERROR_CANT_ACCESS_FILE when it then no longer opened and read as before: the
/// mark has been taken away again. A file with another reparse point is refused by the file system.
[[nodiscard]] DWORD set_mark(HANDLE file, const std::wstring& path);

/// The same for a file that is not open.
[[nodiscard]] DWORD mark_file(const std::wstring& path);

/// Takes our mark away. One of the same tag by another maker stays: the file system compares the GUID.
[[nodiscard]] DWORD unmark_file(const std::wstring& path);

/// False when the file cannot be opened and nobody's lock or right is the reason.
[[nodiscard]] bool opens_for_others(const std::wstring& path);

}  // namespace ov::devservice
