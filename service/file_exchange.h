#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

/// Results that a reply cannot hold come as a file that the driver writes into the caller's temporary folder.
namespace ov::service {

/// The largest file that is read, 20 MiB. The driver's own limit for what it writes.
inline constexpr std::int64_t driver_file_limit_bytes = 0x1400000;

/// The folder that the driver is told to write into, with its trailing backslash; empty when the system names
/// none of at most 259 characters.
/// https://learn.microsoft.com/windows/win32/api/fileapi/nf-fileapi-gettemppathw
[[nodiscard]] std::wstring temp_folder();

/// Reads the whole file at `path`, up to its first NUL, into `text`; on failure `text` is untouched.
///
/// The failures are Windows errors as HRESULTs: ERROR_BUFFER_OVERFLOW for a file above the limit,
/// ERROR_NO_DATA for an empty one, else that of opening, sizing or reading; and E_OUTOFMEMORY when there is
/// no memory for it.
[[nodiscard]] HRESULT read_file_text(const std::wstring& path, std::string& text) noexcept;

/// The text of a file that the driver wrote for this process; empty when it could not be read. The file is
/// deleted either way: nobody else would.
[[nodiscard]] std::string take_driver_file(const std::wstring& path) noexcept;

}  // namespace ov::service
