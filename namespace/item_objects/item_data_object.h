#pragma once

#include <windows.h>
#include <shtypes.h>

namespace ov::name_space {

/// The shell's data object for `count` entries of the folder at `folder`, asked for `riid`, which must be
/// IDataObject. Systems older than Windows 8 do not put a file list into it by themselves: there the path of
/// a first entry that can be browsed is added as CF_HDROP. Throws std::bad_alloc only.
/// https://learn.microsoft.com/windows/win32/api/shlobj_core/nf-shlobj_core-shcreatedataobject
[[nodiscard]] HRESULT create_item_data_object(PCIDLIST_ABSOLUTE folder, UINT count,
                                              PCUITEMID_CHILD_ARRAY entries, REFIID riid, void** result);

}  // namespace ov::name_space
