#include "ovufc/runtime/semaphores.h"

// The semaphores of the C++ runtime of mingw-w64, given back when the DLL is unloaded. The runtime makes one
// for each lock of its own when it is first taken (the table of exception handlers of 32-bit files, the
// guards of function-local statics) and, made for a program, never closes it: one handle of the host's for
// each load.
#include <windows.h>

#ifdef __MINGW32__

namespace {

/// The runtime has fewer locks; what does not fit is left open, as it was before.
constexpr LONG capacity = 16;
HANDLE made[capacity];  // NOLINT(*-avoid-c-arrays)
LONG made_count = 0;

HANDLE WINAPI make_semaphore(LPSECURITY_ATTRIBUTES security, LONG initial_count, LONG maximum_count,
                             LPCWSTR name) {
    const HANDLE semaphore =
        CreateSemaphoreExW(security, initial_count, maximum_count, name, 0, SEMAPHORE_ALL_ACCESS);
    if (semaphore != nullptr) {
        const LONG place = InterlockedIncrement(&made_count) - 1;
        if (place < capacity) {
            made[place] = semaphore;
        }
    }
    return semaphore;
}

}  // namespace

/// Where the runtime looks for CreateSemaphoreW: the slot of the import table, which is not needed then.
#ifdef _WIN64
#define RUNTIME_SLOT "__imp_CreateSemaphoreW"
#else
#define RUNTIME_SLOT "__imp__CreateSemaphoreW@16"
#endif
extern decltype(&make_semaphore) const runtime_slot __asm__(RUNTIME_SLOT);
decltype(&make_semaphore) const runtime_slot = &make_semaphore;

namespace ov::runtime {

void close_semaphores() noexcept {
    for (HANDLE& semaphore : made) {
        if (semaphore != nullptr) {
            CloseHandle(semaphore);
            semaphore = nullptr;
        }
    }
}

}  // namespace ov::runtime

#else

namespace ov::runtime {

void close_semaphores() noexcept {}

}  // namespace ov::runtime

#endif
