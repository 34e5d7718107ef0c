#include "companions/devdriver/waiting/worker.h"

#define WAIT_STEP_100NS (10LL * 10000LL)
#define WAIT_STEPS 100

static volatile LONG under_way;

static void NTAPI run(void* context) {
    struct worker* worker = context;
    worker->work(worker);
    InterlockedDecrement(&under_way);
    PsTerminateSystemThread(STATUS_SUCCESS);
}

NTSTATUS worker_start(struct worker* worker, HANDLE* thread) {
    HANDLE started;
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, NULL, OBJ_KERNEL_HANDLE, NULL, NULL);
    InterlockedIncrement(&under_way);
    const NTSTATUS status =
        PsCreateSystemThread(&started, THREAD_ALL_ACCESS, &attributes, NULL, NULL, run, worker);
    if (!NT_SUCCESS(status)) {
        InterlockedDecrement(&under_way);
    } else if (thread != NULL) {
        *thread = started;
    } else {
        ZwClose(started);
    }
    return status;
}

void worker_wait(void) {
    LARGE_INTEGER step = {.QuadPart = -WAIT_STEP_100NS};
    /* One step more than needed: a thread counts itself out just before it leaves our code. */
    for (int i = 0; i < WAIT_STEPS && under_way != 0; ++i) {
        KeDelayExecutionThread(KernelMode, FALSE, &step);
    }
    KeDelayExecutionThread(KernelMode, FALSE, &step);
}
