#include "companions/devdriver/mailbox/users.h"

#include "companions/devdriver/caller.h"
#include "companions/devdriver/mailbox/mailbox.h"
#include "companions/devdriver/waiting/opener.h"
#include "companions/devdriver/waiting/reclaimer.h"

#define USER_TAG 0x7276724Fu /* "Orvr" in a pool dump */

struct user {
    LIST_ENTRY link;
    ULONG process_id;
    BOOLEAN serves;
    struct share share;
};

static LIST_ENTRY users;
static FAST_MUTEX users_lock;
static struct user* service_side; /* set before its mapping is made, so that two cannot pass together */

void users_initialise(void) {
    InitializeListHead(&users);
    ExInitializeFastMutex(&users_lock);
}

static BOOLEAN is_client(ULONG process_id) {
    for (LIST_ENTRY* link = users.Flink; link != &users; link = link->Flink) {
        const struct user* user = CONTAINING_RECORD(link, struct user, link);
        if (!user->serves && user->process_id == process_id) {
            return TRUE;
        }
    }
    return FALSE;
}

void users_sweep(void) {
    ExAcquireFastMutex(&users_lock);
    mailbox_sweep(is_client, service_side != NULL);
    ExReleaseFastMutex(&users_lock);
}

/* From here on the slots of the user's process are left alone, and no second service side gets in. */
static NTSTATUS enlist(struct user* user, void** place) {
    NTSTATUS status = STATUS_SUCCESS;
    ExAcquireFastMutex(&users_lock);
    if (*place != NULL) {
        status = STATUS_INVALID_DEVICE_STATE;
    } else if (user->serves && service_side != NULL) {
        status = STATUS_DEVICE_BUSY;
    } else {
        *place = user;
        InsertTailList(&users, &user->link);
        if (user->serves) {
            service_side = user;
            mailbox_begin_service();
        }
    }
    ExReleaseFastMutex(&users_lock);
    return status;
}

static struct user* delist(void** place) {
    ExAcquireFastMutex(&users_lock);
    struct user* user = *place;
    if (user != NULL) {
        *place = NULL;
        RemoveEntryList(&user->link);
        if (user == service_side) {
            service_side = NULL;
            mailbox_end_service();
        }
        mailbox_sweep(is_client, service_side != NULL);
    }
    ExReleaseFastMutex(&users_lock);
    return user;
}

static NTSTATUS add(void** place, BOOLEAN serves, ACCESS_MASK semaphore_access, struct share* share) {
    struct user* user = ExAllocatePoolWithTag(NonPagedPool, sizeof *user, USER_TAG);
    if (user == NULL) {
        return STATUS_INSUFFICIENT_RESOURCES;
    }
    RtlZeroMemory(user, sizeof *user);
    user->process_id = (ULONG)(ULONG_PTR)PsGetCurrentProcessId();
    user->serves = serves;
    NTSTATUS status = enlist(user, place);
    if (!NT_SUCCESS(status)) {
        ExFreePoolWithTag(user, USER_TAG);
        return status;
    }
    /* The handle is in use by this very request, so nothing can remove the user meanwhile. */
    status = opener_share(semaphore_access, &user->share);
    if (NT_SUCCESS(status)) {
        *share = user->share;
    } else {
        users_remove(place);
    }
    return status;
}

NTSTATUS users_add_client(void** place, orv_open_reply* reply) {
    struct share share;
    /* A client may signal the semaphore, not wait on it: it could take other clients' signals away. */
    const NTSTATUS status = add(place, FALSE, SEMAPHORE_MODIFY_STATE, &share);
    if (NT_SUCCESS(status)) {
        reply->section = (ULONG_PTR)share.view;
        reply->semaphore = (ULONG_PTR)share.semaphore;
        reply->third = 0;
    }
    return status;
}

NTSTATUS users_add_service(void** place, orv_serve_reply* reply) {
    if (!caller_is_administrator()) {
        return STATUS_ACCESS_DENIED;
    }
    struct share share;
    const NTSTATUS status = add(place, TRUE, SEMAPHORE_MODIFY_STATE | SYNCHRONIZE, &share);
    if (NT_SUCCESS(status)) {
        reply->section = (ULONG_PTR)share.view;
        reply->semaphore = (ULONG_PTR)share.semaphore;
        reply->section_bytes = ORV_SECTION_BYTES;
    }
    return status;
}

void users_remove(void** place) {
    struct user* user = delist(place);
    if (user != NULL) {
        reclaimer_take(&user->share);
        ExFreePoolWithTag(user, USER_TAG);
    }
}
