#ifndef ORV_DEVDRIVER_MAILBOX_H
#define ORV_DEVDRIVER_MAILBOX_H

/*
 * The shared section and its semaphore: made once per load of the driver, mapped into whoever opens it.
 *
 * Clients need to write the slots and to read the status block; both lie in one writable mapping, because a
 * view cannot start with one page of another protection. So nothing in the section is believed here: its
 * words are read once and compared, never used as sizes, offsets or addresses.
 */

#include <ntifs.h>

#include "companions/devdriver/service_wire.h"

/* A process's share of the mailbox. */
struct share {
    HANDLE process;   /* ours, to take the mapping away with */
    void* view;       /* in that process */
    HANDLE semaphore; /* in that process */
};

NTSTATUS mailbox_create(void);
/* Ends service first, for clients whose mapping outlives the driver. */
void mailbox_delete(void);

/* Maps the section into a process and gives it the semaphore; takes over the handle `process`. May not
 * return. */
NTSTATUS mailbox_share(HANDLE process, ACCESS_MASK semaphore_access, struct share* out);
/* Takes a mapping away again; harmless when its process has ended. The semaphore is left to its owner. */
void mailbox_unshare(struct share* share);
/* The same for a process that was never told of its share: the semaphore too. */
void mailbox_take_back(struct share* share);

/* A new service side finds a whole status block and tells clients itself when it serves. */
void mailbox_begin_service(void);
/*
 * Zero in the state word makes waiting clients give up at their next look; what the service side had taken
 * and not answered counts as given up.
 */
void mailbox_end_service(void);

/*
 * Frees the slots that nobody will use again. `is_client` tells whether a process id belongs to a process
 * that has the mailbox open; `serving` whether a service side is there.
 */
void mailbox_sweep(BOOLEAN (*is_client)(ULONG process_id), BOOLEAN serving);

#endif
