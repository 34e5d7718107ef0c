#ifndef ORV_DRVPORT_WIRE_H
#define ORV_DRVPORT_WIRE_H

/*
 * What the driver and its clients share: one device-control request, then a section of shared memory.
 *
 * The one place where slot offsets stand. C and C++, because the driver is C. Everything in the section is
 * written by other processes: read each word once, bound every length, never trust a terminator.
 * All words are little-endian.
 */

/* The C names, because the driver is C. */
#include <stddef.h> /* NOLINT(modernize-deprecated-headers) */
#include <stdint.h> /* NOLINT(modernize-deprecated-headers) */

#ifdef __cplusplus
#define ORV_WIRE_ASSERT(condition) static_assert(condition, #condition)
#else
#define ORV_WIRE_ASSERT(condition) _Static_assert(condition, #condition)
#endif

#define ORV_DEVICE_PATH L"\\\\.\\orvdrv"

/* Open request: device type 0xA8A8, function 0x8AA, METHOD_BUFFERED, FILE_ANY_ACCESS; answers orv_open_reply.
 */
#define ORV_IOCTL_OPEN 0xA8A822A8u

#define ORV_SLOT_BYTES 4096u
#define ORV_STATUS_BLOCK_BYTES 4096u
#define ORV_REQUEST_TEXT_BYTES 2048u
#define ORV_REQUEST_BYTES 2060u
#define ORV_REPLY_LIMIT_BYTES 2048u
#define ORV_PAYLOAD_BYTES 3980u
/* How much of a slot's payload the client clears when it gives the slot back. */
#define ORV_PAYLOAD_CLEARED_BYTES 3948u

/* Slot states. */
#define ORV_SLOT_POSTED 0x1000u
#define ORV_SLOT_REPLIED 0x2000u
#define ORV_SLOT_TAKEN 0x4000u

/* Request kinds: every request has the one kind; a client leaves the other when it gives the slot back. */
#define ORV_KIND_REQUEST 0x80000001u
#define ORV_KIND_RELEASED 0xCCCCu
/* What a client leaves as claimant when it gives the slot back. */
#define ORV_CLAIMANT_RELEASED 4u

/* Bits of the status block's flags word. */
#define ORV_FLAG_UI_RESTRICTED 1u
#define ORV_FLAG_RESTORE_HIDDEN 4u
#define ORV_FLAG_EXPORTS_AVAILABLE 8u
#define ORV_FLAG_ADDONS_SHOWN 16u
#define ORV_FLAG_DETAILS_VIEW 32u
#define ORV_FLAG_UNPROTECT_BLOCKED 64u

/* Answer to the open request. Pointers and handles are valid in the process that asked. */
typedef struct orv_open_reply {
    uint64_t section;   /* where the section is mapped */
    uint64_t semaphore; /* handle of the request semaphore */
    uint64_t third;     /* kept by the client, never read */
} orv_open_reply;
ORV_WIRE_ASSERT(sizeof(orv_open_reply) == 24);

/* First 4096 bytes of the section, written by the driver's side, read by clients. */
typedef struct orv_status_block {
    uint32_t state; /* non-zero while the driver serves requests */
    uint32_t reserved_4;
    uint32_t section_bytes; /* size of the whole section; slots fill the rest of it */
    uint8_t reserved_12[52];
    uint32_t generation; /* changes when the list of protected locations changes */
    uint8_t reserved_68[60];
    uint32_t flags; /* ORV_FLAG_* */
    uint8_t reserved_132[3964];
} orv_status_block;
ORV_WIRE_ASSERT(sizeof(orv_status_block) == ORV_STATUS_BLOCK_BYTES);
ORV_WIRE_ASSERT(offsetof(orv_status_block, section_bytes) == 8);
ORV_WIRE_ASSERT(offsetof(orv_status_block, generation) == 64);
ORV_WIRE_ASSERT(offsetof(orv_status_block, flags) == 128);

/* Mailbox slot k, at offset 4096 * (k + 1). */
typedef struct orv_slot {
    uint32_t owner;     /* 0 free, else process id; claimed by compare-and-swap, freed by exchange */
    uint32_t state;     /* ORV_SLOT_* */
    uint32_t abandoned; /* 1: nobody waits for the reply, the driver frees the slot; set by exchange */
    uint32_t kind;      /* ORV_KIND_* */
    uint32_t claimant;  /* process id again, written after the claim */
    uint32_t word_20;   /* written 0 */
    uint8_t reserved_24[72];
    uint8_t cleared_96[16]; /* zeroed on release */
    uint32_t payload_bytes; /* request: 2060; reply: length as written by the driver */
    uint8_t payload[ORV_PAYLOAD_BYTES];
} orv_slot;
ORV_WIRE_ASSERT(sizeof(orv_slot) == ORV_SLOT_BYTES);
ORV_WIRE_ASSERT(offsetof(orv_slot, state) == 4);
ORV_WIRE_ASSERT(offsetof(orv_slot, abandoned) == 8);
ORV_WIRE_ASSERT(offsetof(orv_slot, kind) == 12);
ORV_WIRE_ASSERT(offsetof(orv_slot, claimant) == 16);
ORV_WIRE_ASSERT(offsetof(orv_slot, word_20) == 20);
ORV_WIRE_ASSERT(offsetof(orv_slot, cleared_96) == 96);
ORV_WIRE_ASSERT(offsetof(orv_slot, payload_bytes) == 112);
ORV_WIRE_ASSERT(offsetof(orv_slot, payload) == 116);

/* Payload of a request. */
typedef struct orv_request {
    uint32_t process_id;               /* of the caller, taken at process attach */
    uint32_t thread_id;                /* of the calling thread */
    uint32_t session_id;               /* Terminal Services session of the caller, taken at process attach */
    char text[ORV_REQUEST_TEXT_BYTES]; /* JSON, UTF-8, NUL-padded; at most 2047 bytes are used */
} orv_request;
ORV_WIRE_ASSERT(sizeof(orv_request) == ORV_REQUEST_BYTES);
ORV_WIRE_ASSERT(offsetof(orv_request, text) == 12);

#endif
