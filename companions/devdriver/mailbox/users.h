#ifndef ORV_DEVDRIVER_USERS_H
#define ORV_DEVDRIVER_USERS_H

/*
 * Who has the mailbox: one record for each device handle that asked for it, client or service side.
 *
 * One lock guards the list and the freeing of slots. It is never held across a call that waits for another
 * process.
 */

#include <ntifs.h>

#include "companions/devdriver/service_wire.h"

struct user;

void users_initialise(void);

/*
 * Makes the caller of the current request a client, or the service side, and remembers it in `*place`, the
 * file object's context word. STATUS_INVALID_DEVICE_STATE when this handle has the mailbox already,
 * STATUS_DEVICE_BUSY when there is a service side already.
 */
NTSTATUS users_add_client(void** place, orv_open_reply* reply);
NTSTATUS users_add_service(void** place, orv_serve_reply* reply);

/* Forgets who is remembered in `*place`, if anybody: the last handle to the file object is closed. */
void users_remove(void** place);

/* Frees the slots that nobody will use again. */
void users_sweep(void);

#endif
