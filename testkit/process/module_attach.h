#pragma once

#include "module/state/module_state.h"

namespace ov::test {

/// A test program that links the product's libraries stands in for the module: including this header records
/// at start what the loader would have told DllMain. Not for programs that load the shipped DLL.
inline const bool module_attached = (module_state::record_process_attach(GetModuleHandleW(nullptr)), true);

}  // namespace ov::test
