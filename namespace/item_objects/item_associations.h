#pragma once

#include <windows.h>
#include <shtypes.h>

namespace ov::name_space {

/// Where the shell finds an entry's registered handlers: the ProgID of its type and, for what can be browsed,
/// the folder class. E_NOINTERFACE for every other entry.
/// https://learn.microsoft.com/windows/win32/api/shellapi/nf-shellapi-assoccreateforclasses
[[nodiscard]] HRESULT create_item_associations(PCUITEMID_CHILD entry, REFIID riid, void** result) noexcept;

}  // namespace ov::name_space
