#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "ovufc/win/handle.h"

namespace ov::devservice {

/// Small file operations. All paths are clean paths of any length; every function gives a Windows error code,
/// ERROR_SUCCESS when it did its work.

/// Opens a file for reading whatever others do with it. What is a link itself is not followed:
/// ERROR_CANT_ACCESS_FILE.
[[nodiscard]] DWORD open_for_reading(const std::wstring& path, win::unique_file& file);

/// Makes a file for writing; ERROR_FILE_EXISTS when something of that name is there.
[[nodiscard]] DWORD create_new_file(const std::wstring& path, win::unique_file& file);

/// Copies `from` to its end; `to` may be INVALID_HANDLE_VALUE, to hash only. Gives the SHA-256 and the size
/// of what was read.
[[nodiscard]] DWORD copy_and_hash(HANDLE from, HANDLE to, std::string& digest, std::uint64_t& size_bytes);

/// SHA-256 of a file's content.
[[nodiscard]] DWORD hash_file(const std::wstring& path, std::string& digest);

/// Makes a folder and those above it that are missing.
[[nodiscard]] DWORD make_folders(const std::wstring& path);

/// Moves a file or a link; a file to another volume by copy and delete. Read-only files too. Never replaces.
[[nodiscard]] DWORD move_file(const std::wstring& from, const std::wstring& to);

/// Moves `from` to `to` in one step: whatever ends the process, `to` is the file that was there or the new
/// one. Nothing can be replaced while somebody has it open, so it is tried again until the time is over:
/// ERROR_ACCESS_DENIED or ERROR_SHARING_VIOLATION then.
[[nodiscard]] DWORD replace_file(const std::wstring& from, const std::wstring& to, DWORD patience_ms);

/// How long to wait with that for those who only read one of the service's own files.
inline constexpr DWORD own_file_patience_ms = 10'000;

/// Gives a file a second name, or where that cannot be (on another volume) a copy whose bytes are on the
/// disk. Refused while somebody holds the file; nobody wrote to it while it was copied.
[[nodiscard]] DWORD duplicate_file(const std::wstring& from, const std::wstring& to);

/// Deletes a file, a read-only one too.
[[nodiscard]] DWORD remove_file(const std::wstring& path);

/// A whole file as bytes, refused with ERROR_FILE_TOO_LARGE beyond `limit_bytes`.
[[nodiscard]] DWORD read_whole_file(const std::wstring& path, std::uint64_t limit_bytes, std::string& bytes);

/// Writes a new file, flushed to the disk before it is closed.
[[nodiscard]] DWORD write_new_file(const std::wstring& path, const std::string& bytes);

/// `path`, or when something is there already, the first of "path (2)", "path (3)"... that is free.
[[nodiscard]] std::wstring free_name(const std::wstring& path);

/// A file attribute word, or INVALID_FILE_ATTRIBUTES.
[[nodiscard]] DWORD attributes_of(const std::wstring& path);

/// True for a folder that is not a link.
[[nodiscard]] bool is_plain_folder(const std::wstring& path);

}  // namespace ov::devservice
