#ifndef ORV_DEVDRIVER_RECLAIMER_H
#define ORV_DEVDRIVER_RECLAIMER_H

/*
 * Takes mappings away from processes that have closed the device.
 *
 * Each on a thread of its own: unmapping waits for the other process, and one that is just ending has been
 * seen to keep the caller for good. On the dispatch thread that would stop the driver for everybody.
 */

#include "companions/devdriver/mailbox.h"

/* Takes over `share`. Without memory or a thread for it the mapping stays until its process ends. */
void reclaimer_take(const struct share* share);

/* Before the driver goes: waits for what is under way, for a few seconds at most. */
void reclaimer_stop(void);

#endif
