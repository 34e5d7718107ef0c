#ifndef ORV_DEVDRIVER_OPENER_H
#define ORV_DEVDRIVER_OPENER_H

#include "companions/devdriver/mailbox/mailbox.h"

/*
 * Gives the calling process its share of the mailbox. A thread of its own does it (worker.h), and the caller
 * waits no longer than until the process has ended, two seconds at most: STATUS_IO_TIMEOUT then, and what is
 * mapped later all the same is taken back.
 *
 * The caller's request is not left pending instead: Wine was seen to cancel a pending request of a killed
 * client after it had been freed, which ended the driver.
 */
NTSTATUS opener_share(ACCESS_MASK semaphore_access, struct share* out);

#endif
