#pragma once

#include <windows.h>
#include <unknwn.h>

#include "module/state/class_ids.h"

namespace ov::bench {

/// What a host does first with the module: takes a class object, here to give it back at once. The empty file
/// has the export, which answers with a failure.
inline void take_class_object(HMODULE module) {
    const auto get_class_object = reinterpret_cast<decltype(&DllGetClassObject)>(
        reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    IUnknown* object = nullptr;
    if (SUCCEEDED(
            get_class_object(class_ids::shell_extension, IID_IUnknown, reinterpret_cast<void**>(&object)))) {
        object->Release();
    }
}

}  // namespace ov::bench
