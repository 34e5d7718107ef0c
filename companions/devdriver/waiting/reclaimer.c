#include "companions/devdriver/waiting/reclaimer.h"

#include "companions/devdriver/waiting/worker.h"

#define RECLAIM_TAG 0x6376724Fu /* "Orvc" in a pool dump */

struct reclaim {
    struct worker worker;
    struct share share;
};

static void reclaim(struct worker* worker) {
    struct reclaim* taken = CONTAINING_RECORD(worker, struct reclaim, worker);
    mailbox_unshare(&taken->share);
    ExFreePoolWithTag(taken, RECLAIM_TAG);
}

void reclaimer_take(const struct share* share) {
    if (share->process == NULL) {
        return;
    }
    struct reclaim* taken = ExAllocatePoolWithTag(NonPagedPool, sizeof *taken, RECLAIM_TAG);
    if (taken != NULL) {
        taken->worker.work = reclaim;
        taken->share = *share;
        if (NT_SUCCESS(worker_start(&taken->worker, NULL))) {
            return;
        }
        ExFreePoolWithTag(taken, RECLAIM_TAG);
    }
    ZwClose(share->process);
}
