#include <windows.h>

/// A DLL whose import table the tests of import_patch change.
extern "C" __declspec(dllexport) DWORD sample_tick_count() {
    return GetTickCount();
}
