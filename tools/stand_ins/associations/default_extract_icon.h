#pragma once

#include <windows.h>

namespace ov::stand_ins {

/// SHCreateDefaultExtractIcon, which Wine lacks: a call to it would end the process.
///
/// The object answers IDefaultExtractIconInit, IExtractIconW and IExtractIconA. Which location it gives: the
/// open icon for GIL_OPENICON and the shortcut icon for GIL_FORSHORTCUT where they were set, else the normal
/// one, else the DefaultIcon of the key that was set, else the default one; S_FALSE without any. Flags set
/// with SetFlags are given out with it. Documented under "SHCreateDefaultExtractIcon function" and
/// "IDefaultExtractIconInit interface (shobjidl.h)".
STDAPI create_default_extract_icon(REFIID riid, void** result);

}  // namespace ov::stand_ins
