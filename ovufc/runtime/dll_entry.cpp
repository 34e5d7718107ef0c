#include <windows.h>

#include "ovufc/runtime/semaphores.h"
#include "ovufc/runtime/stack_guard.h"

// The entry point of our DLLs: it calls that of the C++ runtime, except where the runtime would do too much.

#ifdef _MSC_VER
#define DllMainCRTStartup _DllMainCRTStartup
#else
/// The runtime's hook for native thread-local variables, of which no DLL of ours has any. Its own one brings
/// a TLS directory along: the system then calls the DLL at the start and end of each thread of the host, and
/// refuses DisableThreadLibraryCalls.
extern "C" const PIMAGE_TLS_CALLBACK __dyn_tls_init_callback;
extern "C" const PIMAGE_TLS_CALLBACK __dyn_tls_init_callback = nullptr;
#endif

extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE instance, DWORD reason, LPVOID reserved);

/// At the end of the process nothing is done at all, not even what the runtime does, which is to run the
/// destructors of static objects: the other threads were ended wherever they stood, with whatever locks they
/// held, and libraries that we use may be gone. The system takes back what the process had. FreeLibrary takes
/// the usual way.
extern "C" BOOL WINAPI orv_dll_entry(HINSTANCE instance, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH) {
        ov::runtime::draw_stack_guard();
    }
    if (reason != DLL_PROCESS_DETACH) {
        return DllMainCRTStartup(instance, reason, reserved);
    }
    const bool process_ends = reserved != nullptr;
    if (!process_ends) {
        DllMainCRTStartup(instance, reason, reserved);
        ov::runtime::close_semaphores();
    }
    return TRUE;
}
