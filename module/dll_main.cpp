#include <windows.h>

#include "module/class_objects.h"
#include "module/registration/registration.h"
#include "module/state/module_state.h"

// The entry points of the module. Each only forwards to the function that does the work; none throws.

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        ov::module_state::record_process_attach(instance);
        // Granted because the file has no TLS directory; see ovufc/runtime/dll_entry.cpp.
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, LPVOID* ppv) {
    ov::module_state::load_resource_library();
    return ov::get_class_object(rclsid, riid, ppv);
}

STDAPI DllCanUnloadNow() {
    return ov::can_unload() ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
    return ov::registration::register_server();
}

STDAPI DllUnregisterServer() {
    return ov::registration::unregister_server();
}
