/*
 * orvdrv.sys, the driver for development: gives clients and one service side the shared mailbox and frees
 * what they leave behind. What a request means is the service side's business.
 */

#include <ntifs.h>

#include "companions/devdriver/mailbox/mailbox.h"
#include "companions/devdriver/service_wire.h"
#include "companions/devdriver/mailbox/sweeper.h"
#include "companions/devdriver/mailbox/users.h"
#include "companions/devdriver/waiting/worker.h"

#define DEVICE_TYPE_ORVDRV 0xA8A8u

static UNICODE_STRING link_name = RTL_CONSTANT_STRING(L"\\DosDevices\\orvdrv");

static NTSTATUS complete(IRP* irp, NTSTATUS status, ULONG_PTR information) {
    irp->IoStatus.Status = status;
    irp->IoStatus.Information = information;
    IoCompleteRequest(irp, IO_NO_INCREMENT);
    return status;
}

static NTSTATUS NTAPI dispatch_create(DEVICE_OBJECT* device, IRP* irp) {
    UNREFERENCED_PARAMETER(device);
    IoGetCurrentIrpStackLocation(irp)->FileObject->FsContext = NULL;
    return complete(irp, STATUS_SUCCESS, 0);
}

static NTSTATUS NTAPI dispatch_close(DEVICE_OBJECT* device, IRP* irp) {
    UNREFERENCED_PARAMETER(device);
    users_remove(&IoGetCurrentIrpStackLocation(irp)->FileObject->FsContext);
    return complete(irp, STATUS_SUCCESS, 0);
}

static NTSTATUS NTAPI dispatch_control(DEVICE_OBJECT* device, IRP* irp) {
    UNREFERENCED_PARAMETER(device);
    const IO_STACK_LOCATION* location = IoGetCurrentIrpStackLocation(irp);
    void** place = &location->FileObject->FsContext;
    const ULONG room = location->Parameters.DeviceIoControl.OutputBufferLength;
    void* reply = irp->AssociatedIrp.SystemBuffer;
    NTSTATUS status;
    switch (location->Parameters.DeviceIoControl.IoControlCode) {
        case ORV_IOCTL_OPEN:
            status = room < sizeof(orv_open_reply) ? STATUS_BUFFER_TOO_SMALL : users_add_client(place, reply);
            return complete(irp, status, NT_SUCCESS(status) ? sizeof(orv_open_reply) : 0);
        case ORV_IOCTL_SERVE:
            status =
                room < sizeof(orv_serve_reply) ? STATUS_BUFFER_TOO_SMALL : users_add_service(place, reply);
            return complete(irp, status, NT_SUCCESS(status) ? sizeof(orv_serve_reply) : 0);
        default:
            return complete(irp, STATUS_INVALID_DEVICE_REQUEST, 0);
    }
}

static void NTAPI unload(DRIVER_OBJECT* driver) {
    IoDeleteSymbolicLink(&link_name);
    sweeper_stop();
    worker_wait();
    mailbox_delete();
    IoDeleteDevice(driver->DeviceObject);
}

static NTSTATUS create_device(DRIVER_OBJECT* driver) {
    UNICODE_STRING device_name = RTL_CONSTANT_STRING(L"\\Device\\orvdrv");
    DEVICE_OBJECT* device;
    NTSTATUS status = IoCreateDevice(driver, 0, &device_name, DEVICE_TYPE_ORVDRV, 0, FALSE, &device);
    if (NT_SUCCESS(status)) {
        status = IoCreateSymbolicLink(&link_name, &device_name);
        if (!NT_SUCCESS(status)) {
            IoDeleteDevice(device);
        }
    }
    return status;
}

NTSTATUS NTAPI DriverEntry(DRIVER_OBJECT* driver, UNICODE_STRING* registry_path) {
    UNREFERENCED_PARAMETER(registry_path);
    users_initialise();
    NTSTATUS status = mailbox_create();
    if (!NT_SUCCESS(status)) {
        return status;
    }
    driver->MajorFunction[IRP_MJ_CREATE] = dispatch_create;
    driver->MajorFunction[IRP_MJ_CLOSE] = dispatch_close;
    driver->MajorFunction[IRP_MJ_DEVICE_CONTROL] = dispatch_control;
    driver->DriverUnload = unload;
    status = sweeper_start();
    if (NT_SUCCESS(status)) {
        /* Last: from here on requests come in. */
        status = create_device(driver);
    }
    if (!NT_SUCCESS(status)) {
        sweeper_stop();
        mailbox_delete();
    }
    return status;
}
