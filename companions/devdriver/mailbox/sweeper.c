#include "companions/devdriver/mailbox/sweeper.h"

#include "companions/devdriver/mailbox/users.h"

#define SWEEP_INTERVAL_100NS (100LL * 10000LL)

static HANDLE thread;
static KEVENT stop_event;

static void NTAPI sweep_until_stopped(void* context) {
    UNREFERENCED_PARAMETER(context);
    LARGE_INTEGER interval = {.QuadPart = -SWEEP_INTERVAL_100NS};
    while (KeWaitForSingleObject(&stop_event, Executive, KernelMode, FALSE, &interval) == STATUS_TIMEOUT) {
        users_sweep();
    }
    PsTerminateSystemThread(STATUS_SUCCESS);
}

NTSTATUS sweeper_start(void) {
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, NULL, OBJ_KERNEL_HANDLE, NULL, NULL);
    KeInitializeEvent(&stop_event, NotificationEvent, FALSE);
    return PsCreateSystemThread(&thread, THREAD_ALL_ACCESS, &attributes, NULL, NULL, sweep_until_stopped,
                                NULL);
}

void sweeper_stop(void) {
    if (thread != NULL) {
        KeSetEvent(&stop_event, IO_NO_INCREMENT, FALSE);
        ZwWaitForSingleObject(thread, FALSE, NULL);
        ZwClose(thread);
        thread = NULL;
    }
}
