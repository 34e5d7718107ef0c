#include "companions/devdriver/mailbox/mailbox.h"

/*
 * Wine's ntoskrnl makes no semaphores, so this one call goes to kernelbase.dll, through an import library of
 * our own (kernelbase.def).
 */
__declspec(dllimport) HANDLE NTAPI
    CreateSemaphoreW(void* attributes, LONG initial, LONG maximum, const WCHAR* name);

static HANDLE section_handle;
static HANDLE semaphore_handle;
/*
 * Our own view. Wine runs all of a driver's code in one process, so it is valid in every call; a Windows
 * kernel would want MmMapViewInSystemSpace, which Wine lacks.
 */
static UCHAR* mailbox;

static volatile orv_status_block* status_block(void) {
    return (volatile orv_status_block*)mailbox;
}

static volatile orv_slot* slot_at(ULONG index) {
    return (volatile orv_slot*)(mailbox + ORV_STATUS_BLOCK_BYTES + (SIZE_T)index * ORV_SLOT_BYTES);
}

static NTSTATUS create_section(void) {
    LARGE_INTEGER size = {.QuadPart = ORV_SECTION_BYTES};
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, NULL, OBJ_KERNEL_HANDLE, NULL, NULL);
    return ZwCreateSection(&section_handle, SECTION_MAP_READ | SECTION_MAP_WRITE, &attributes, &size,
                           PAGE_READWRITE, SEC_COMMIT, NULL);
}

static NTSTATUS map_section(HANDLE process, void** view) {
    SIZE_T bytes = 0;
    *view = NULL;
    return ZwMapViewOfSection(section_handle, process, view, 0, 0, NULL, &bytes, ViewUnmap, 0,
                              PAGE_READWRITE);
}

NTSTATUS mailbox_create(void) {
    NTSTATUS status = create_section();
    if (NT_SUCCESS(status)) {
        void* view;
        status = map_section(ZwCurrentProcess(), &view);
        mailbox = view;
    }
    if (NT_SUCCESS(status)) {
        /* One count for each slot: a client that signals without end gains nothing by it. */
        semaphore_handle = CreateSemaphoreW(NULL, 0, ORV_SLOT_COUNT, NULL);
        status = semaphore_handle != NULL ? STATUS_SUCCESS : STATUS_INSUFFICIENT_RESOURCES;
    }
    if (NT_SUCCESS(status)) {
        status_block()->section_bytes = ORV_SECTION_BYTES;
    } else {
        mailbox_delete();
    }
    return status;
}

void mailbox_delete(void) {
    if (mailbox != NULL) {
        mailbox_end_service();
        ZwUnmapViewOfSection(ZwCurrentProcess(), mailbox);
        mailbox = NULL;
    }
    if (section_handle != NULL) {
        ZwClose(section_handle);
        section_handle = NULL;
    }
    if (semaphore_handle != NULL) {
        ZwClose(semaphore_handle);
        semaphore_handle = NULL;
    }
}

NTSTATUS mailbox_share(HANDLE process, ACCESS_MASK semaphore_access, struct share* out) {
    RtlZeroMemory(out, sizeof *out);
    out->process = process;
    NTSTATUS status = map_section(process, &out->view);
    if (NT_SUCCESS(status)) {
        status = ZwDuplicateObject(ZwCurrentProcess(), semaphore_handle, process, &out->semaphore,
                                   semaphore_access, 0, 0);
    }
    if (!NT_SUCCESS(status)) {
        mailbox_unshare(out);
    }
    return status;
}

void mailbox_unshare(struct share* share) {
    if (share->view != NULL) {
        ZwUnmapViewOfSection(share->process, share->view);
    }
    if (share->process != NULL) {
        ZwClose(share->process);
    }
    RtlZeroMemory(share, sizeof *share);
}

void mailbox_take_back(struct share* share) {
    ZwDuplicateObject(share->process, share->semaphore, NULL, NULL, 0, 0, DUPLICATE_CLOSE_SOURCE);
    mailbox_unshare(share);
}

void mailbox_begin_service(void) {
    status_block()->state = 0;
    status_block()->section_bytes = ORV_SECTION_BYTES;
}

void mailbox_end_service(void) {
    InterlockedExchange((volatile LONG*)&status_block()->state, 0);
    for (ULONG index = 0; index < ORV_SLOT_COUNT; ++index) {
        InterlockedCompareExchange((volatile LONG*)&slot_at(index)->state, ORV_SLOT_GIVEN_UP,
                                   ORV_SLOT_IN_SERVICE);
    }
}

static BOOLEAN is_free_to_reclaim(volatile orv_slot* slot, ULONG owner, BOOLEAN (*is_client)(ULONG),
                                  BOOLEAN serving) {
    /*
     * Abandonment first: a state read before it could be from before the request was posted, and the slot of
     * a one-way request would be freed with the request in it. (x64 keeps the order of two volatile reads.)
     */
    const ULONG abandoned = slot->abandoned;
    const ULONG state = slot->state;
    if (serving && state == ORV_SLOT_IN_SERVICE) {
        return FALSE;
    }
    if (!is_client(owner)) {
        return TRUE;
    }
    return abandoned != 0 && (!serving || state != ORV_SLOT_POSTED);
}

void mailbox_sweep(BOOLEAN (*is_client)(ULONG process_id), BOOLEAN serving) {
    for (ULONG index = 0; index < ORV_SLOT_COUNT; ++index) {
        volatile orv_slot* slot = slot_at(index);
        const ULONG owner = slot->owner;
        if (owner != 0 && is_free_to_reclaim(slot, owner, is_client, serving)) {
            /* Clients do not clear the abandoned word when they claim a slot. */
            slot->abandoned = 0;
            slot->state = 0;
            slot->payload_bytes = 0;
            InterlockedCompareExchange((volatile LONG*)&slot->owner, 0, (LONG)owner);
        }
    }
}
