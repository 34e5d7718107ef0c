#ifndef ORV_DEVDRIVER_RECLAIMER_H
#define ORV_DEVDRIVER_RECLAIMER_H

/* Takes mappings away from processes that have closed the device, each on a thread of its own (worker.h). */

#include "companions/devdriver/mailbox/mailbox.h"

/* Takes over `share`, which may be empty. Without memory or a thread for it the mapping stays until its
 * process ends. */
void reclaimer_take(const struct share* share);

#endif
