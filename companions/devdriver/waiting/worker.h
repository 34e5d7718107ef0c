#ifndef ORV_DEVDRIVER_WORKER_H
#define ORV_DEVDRIVER_WORKER_H

/*
 * Threads for work that waits for another process: mapping into one, and out of one. Under Wine a process
 * that is just ending can keep such a call for good, and on the dispatch thread that would stop the driver
 * for everybody. A thread that is kept stays until the driver's host process ends.
 */

#include <ntifs.h>

/* Part of what is worked on; `work` gets it back and owns it from then on. */
struct worker {
    void (*work)(struct worker* self);
};

/* On failure `work` was not called and never will be. `thread` gets a handle to wait on; null when none is
 * wanted. */
NTSTATUS worker_start(struct worker* worker, HANDLE* thread);

/* Before the driver goes: waits for the threads at work, for a second at most. */
void worker_wait(void);

#endif
