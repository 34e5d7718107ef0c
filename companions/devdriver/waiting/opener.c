#include "companions/devdriver/waiting/opener.h"

#include "companions/devdriver/waiting/worker.h"

#define OPENING_TAG 0x6F76724Fu /* "Orvo" in a pool dump */
#define WAIT_STEP_100NS (10LL * 10000LL)
#define WAIT_STEPS 200

enum { UNDER_WAY, FINISHED, GIVEN_UP };

struct opening {
    struct worker worker;
    HANDLE process;
    ACCESS_MASK semaphore_access;
    NTSTATUS status;
    struct share share;
    /*
     * Moved on once from UNDER_WAY, by compare-and-swap: to FINISHED by the thread that maps, or to GIVEN_UP
     * by the one that waits. Who comes second has the opening for itself and frees it.
     */
    volatile LONG state;
};

static BOOLEAN is_first(struct opening* opening, LONG state) {
    return InterlockedCompareExchange(&opening->state, state, UNDER_WAY) == UNDER_WAY;
}

static void map(struct worker* worker) {
    struct opening* opening = CONTAINING_RECORD(worker, struct opening, worker);
    opening->status = mailbox_share(opening->process, opening->semaphore_access, &opening->share);
    if (is_first(opening, FINISHED)) {
        return;
    }
    if (NT_SUCCESS(opening->status)) {
        mailbox_take_back(&opening->share);
    }
    ExFreePoolWithTag(opening, OPENING_TAG);
}

static NTSTATUS open_calling_process(HANDLE* process) {
    CLIENT_ID id = {.UniqueProcess = PsGetCurrentProcessId(), .UniqueThread = NULL};
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, NULL, OBJ_KERNEL_HANDLE, NULL, NULL);
    return ZwOpenProcess(process, PROCESS_ALL_ACCESS, &attributes, &id);
}

static BOOLEAN has_ended(HANDLE process_or_thread, LONGLONG wait_100ns) {
    LARGE_INTEGER wait = {.QuadPart = -wait_100ns};
    return ZwWaitForSingleObject(process_or_thread, FALSE, &wait) == STATUS_SUCCESS;
}

static void wait_for(HANDLE thread, HANDLE process) {
    for (int i = 0; i < WAIT_STEPS; ++i) {
        if (has_ended(thread, WAIT_STEP_100NS) || has_ended(process, 0)) {
            return;
        }
    }
}

/* Takes over the opening. */
static NTSTATUS map_and_wait(struct opening* opening, HANDLE process, struct share* out) {
    HANDLE thread;
    NTSTATUS status = worker_start(&opening->worker, &thread);
    if (NT_SUCCESS(status)) {
        wait_for(thread, process);
        ZwClose(thread);
        if (is_first(opening, GIVEN_UP)) {
            return STATUS_IO_TIMEOUT;
        }
        status = opening->status;
        *out = opening->share;
    } else {
        ZwClose(opening->process);
    }
    ExFreePoolWithTag(opening, OPENING_TAG);
    return status;
}

NTSTATUS opener_share(ACCESS_MASK semaphore_access, struct share* out) {
    RtlZeroMemory(out, sizeof *out);
    HANDLE process;
    NTSTATUS status = open_calling_process(&process);
    if (!NT_SUCCESS(status)) {
        return status;
    }
    struct opening* opening = ExAllocatePoolWithTag(NonPagedPool, sizeof *opening, OPENING_TAG);
    if (opening == NULL) {
        status = STATUS_INSUFFICIENT_RESOURCES;
    } else {
        RtlZeroMemory(opening, sizeof *opening);
        opening->worker.work = map;
        opening->semaphore_access = semaphore_access;
        /* A handle for each, because a mapping that was given up may come to use its own later. */
        status = open_calling_process(&opening->process);
        if (NT_SUCCESS(status)) {
            status = map_and_wait(opening, process, out);
        } else {
            ExFreePoolWithTag(opening, OPENING_TAG);
        }
    }
    ZwClose(process);
    return status;
}
