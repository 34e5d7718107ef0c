#include "companions/devdriver/reclaimer.h"

#include <ntifs.h>

#define RECLAIM_TAG 0x6376724Fu /* "Orvc" in a pool dump */
#define WAIT_STEP_100NS (10LL * 10000LL)
#define WAIT_STEPS 300

static volatile LONG under_way;

static void NTAPI reclaim(void* context) {
    mailbox_unshare(context);
    ExFreePoolWithTag(context, RECLAIM_TAG);
    InterlockedDecrement(&under_way);
    PsTerminateSystemThread(STATUS_SUCCESS);
}

static NTSTATUS start_thread(struct share* share) {
    HANDLE thread;
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, NULL, OBJ_KERNEL_HANDLE, NULL, NULL);
    const NTSTATUS status =
        PsCreateSystemThread(&thread, THREAD_ALL_ACCESS, &attributes, NULL, NULL, reclaim, share);
    if (NT_SUCCESS(status)) {
        ZwClose(thread);
    }
    return status;
}

void reclaimer_take(const struct share* share) {
    struct share* taken = ExAllocatePoolWithTag(NonPagedPool, sizeof *taken, RECLAIM_TAG);
    if (taken != NULL) {
        *taken = *share;
        InterlockedIncrement(&under_way);
        if (NT_SUCCESS(start_thread(taken))) {
            return;
        }
        InterlockedDecrement(&under_way);
        ExFreePoolWithTag(taken, RECLAIM_TAG);
    }
    if (share->process != NULL) {
        ZwClose(share->process);
    }
}

void reclaimer_stop(void) {
    LARGE_INTEGER step = {.QuadPart = -WAIT_STEP_100NS};
    /* One step more than needed: a thread counts itself out just before it leaves our code. */
    for (int i = 0; i < WAIT_STEPS && under_way != 0; ++i) {
        KeDelayExecutionThread(KernelMode, FALSE, &step);
    }
    KeDelayExecutionThread(KernelMode, FALSE, &step);
}
