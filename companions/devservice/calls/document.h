#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "companions/devservice/store/vault.h"

namespace ov::devservice {

/// What clients read of a document at most.
inline constexpr std::uint64_t document_limit_bytes = 20ull * 1024 * 1024;

/// The rule text for a folder of every user's profile, such as "Documents": recognised by the namespace
/// folder character by character, never evaluated.
[[nodiscard]] std::string rule_text(const std::wstring& rule);

/// The protected-locations document: the one that was given on the command line, or the one made from the
/// state, with all seven arrays. None when the given one cannot be read.
[[nodiscard]] std::optional<std::string> protected_locations(const vault& vault);

/// Serves the content of `file` as the document from now on, whatever it is: also a broken one can be shown.
/// ERROR_FILE_TOO_LARGE beyond the limit.
[[nodiscard]] DWORD fix_document(vault& vault, const std::wstring& file);

/// Serves the document made from the state again.
[[nodiscard]] DWORD release_document(vault& vault);

}  // namespace ov::devservice
