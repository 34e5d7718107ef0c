#pragma once

#include <windows.h>
#include <shlobj.h>

#include <array>

#include "module/state/class_ids.h"

namespace ov::test {

/// A class of the module, with an interface that its objects answer.
struct class_under_test {
    const char* name;
    CLSID id;
    IID instance_interface;
};

inline const std::array classes_under_test{
    class_under_test{"shell extension", class_ids::shell_extension, IID_IContextMenu},
    class_under_test{"namespace folder", class_ids::namespace_folder, IID_IShellFolder},
    class_under_test{"One Click Restore", class_ids::one_click_restore, IID_IContextMenu},
    class_under_test{"Addons", class_ids::addons, IID_IContextMenu},
};

/// What a test leaves in an out-pointer to see whether it was touched.
inline void* const untouched = reinterpret_cast<void*>(0x5A5A5A5A);

}  // namespace ov::test
