#pragma once

#include <string>
#include <string_view>

namespace ov::cert {

/// True when the file at `path` carries a valid Authenticode signature and its signer is the product's maker.
///
/// Every failure is false: no file, no signature, a broken or untrusted chain, another signer. Shows nothing,
/// asks no network for missing parts of a chain, and leaves nothing open. Any thread.
/// https://learn.microsoft.com/windows/win32/api/wintrust/nf-wintrust-winverifytrust
[[nodiscard]] bool is_signed_by_maker(const std::wstring& path) noexcept;

/// True for the maker's name in any mix of upper and lower case, as the current locale folds them; a name of
/// another length is another name.
[[nodiscard]] bool is_makers_name(std::wstring_view name) noexcept;

}  // namespace ov::cert
