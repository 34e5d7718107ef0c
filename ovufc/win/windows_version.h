#pragma once

namespace ov::win {

/// True on Windows 8 (6.2) and everything newer.
///
/// Asks VerifyVersionInfoW, which compares with the version that the host process is shown: a host without a
/// manifest for Windows 8.1 or later sees 6.2, which still answers true.
[[nodiscard]] bool is_windows_8_or_later() noexcept;

}  // namespace ov::win
