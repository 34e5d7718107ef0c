#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "ovufc/win/handle.h"

namespace ov::devservice {

/// Small file operations. All paths are clean paths of any length; every function gives a Windows error code,
/// ERROR_SUCCESS when it did its work.

/// Opens a file for reading whatever others do with it. A link is not followed: ERROR_CANT_ACCESS_FILE.
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

/// Moves a file or a link; to another volume by copy and delete. Read-only files too. Never replaces.
[[nodiscard]] DWORD move_file(const std::wstring& from, const std::wstring& to);

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

/// True for a folder that is no link.
[[nodiscard]] bool is_plain_folder(const std::wstring& path);

/// True when `relative` leads through a link somewhere below `folder`, or is one: what is written there would
/// land outside the folder.
[[nodiscard]] bool leads_through_link(const std::wstring& folder, const std::wstring& relative);

}  // namespace ov::devservice
