#pragma once

#include <windows.h>
#include <objidl.h>
#include <shtypes.h>

namespace ov::stand_ins {

/// SHCreateDataObject, which Wine answers with E_NOTIMPL.
///
/// The object offers CFSTR_SHELLIDLIST for `items` of `folder` and, when all of them lie in the file system,
/// CF_HDROP; formats put into it with SetData; and what `inner` (may be null) offers besides. The id lists
/// are copied. Paths are asked for when CF_HDROP is first wanted, not before: the folder may be slow.
/// Documented under "SHCreateDataObject function (shlobj_core.h)".
STDAPI create_data_object(PCIDLIST_ABSOLUTE folder, UINT count, PCUITEMID_CHILD_ARRAY items,
                          IDataObject* inner, REFIID riid, void** result);

}  // namespace ov::stand_ins
