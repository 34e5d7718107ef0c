#ifndef ORV_DEVDRIVER_SERVICE_WIRE_H
#define ORV_DEVDRIVER_SERVICE_WIRE_H

/*
 * What the driver and its service side share beyond the clients' view in wire.h: the request by which a
 * process becomes the service side, and the two slot states that only the service side and the driver use.
 */

#include "ovufc/ipc/drvport/wire.h"

/*
 * Serve request: device type 0xA8A8, function 0x8AB, METHOD_BUFFERED, FILE_ANY_ACCESS; answers
 * orv_serve_reply. Granted to a process whose token holds the administrators' group enabled, else
 * ERROR_ACCESS_DENIED; to one device handle at a time, else ERROR_BUSY. Closing that handle ends the service:
 * the driver writes 0 into the state word and takes the mapping away.
 */
#define ORV_IOCTL_SERVE 0xA8A822ACu

/* Number of mailbox slots; with the status block the section is 128 KiB. */
#define ORV_SLOT_COUNT 31u
#define ORV_SECTION_BYTES (ORV_STATUS_BLOCK_BYTES + ORV_SLOT_COUNT * ORV_SLOT_BYTES)

/*
 * Slot states between ORV_SLOT_POSTED and ORV_SLOT_REPLIED, of no meaning to a client, which waits on.
 * A slot in service is never freed while a service side is connected, whatever became of its owner.
 */
#define ORV_SLOT_IN_SERVICE 0x1800u /* the service side has taken the request */
#define ORV_SLOT_GIVEN_UP 0x8000u   /* the service side will not answer it */

/* Answer to the serve request. Pointers and handles are valid in the process that asked. */
typedef struct orv_serve_reply {
    uint64_t section;       /* where the section is mapped, writable */
    uint64_t semaphore;     /* handle of the request semaphore, to be waited on */
    uint64_t section_bytes; /* the true size: the size word in the section is writable by every client */
} orv_serve_reply;
ORV_WIRE_ASSERT(sizeof(orv_serve_reply) == 24);

#endif
