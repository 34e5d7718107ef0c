#pragma once

#include <windows.h>
#include <shtypes.h>

namespace ov::name_space {

/// The system's icon extractor for an entry (null, or another folder's: the icon of an unknown item), asked
/// for `riid`. Folders have the icon that the system shows for their path, the action entries one of this
/// module's.
/// https://learn.microsoft.com/windows/win32/api/shlobj_core/nf-shlobj_core-shcreatedefaultextracticon
/// Throws std::bad_alloc only.
[[nodiscard]] HRESULT create_item_icon(PCUITEMID_CHILD entry, REFIID riid, void** result);

}  // namespace ov::name_space
