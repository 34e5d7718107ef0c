#ifndef ORV_DEVDRIVER_SWEEPER_H
#define ORV_DEVDRIVER_SWEEPER_H

#include <ntifs.h>

/*
 * The driver's one thread. Clients tell nobody that they abandon a slot, so it looks every 100 ms for slots
 * to free; that is how long an abandoned and answered slot stays out of use at most.
 */
NTSTATUS sweeper_start(void);
/* Returns when the thread has ended; harmless when it never started. */
void sweeper_stop(void);

#endif
