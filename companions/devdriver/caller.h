#ifndef ORV_DEVDRIVER_CALLER_H
#define ORV_DEVDRIVER_CALLER_H

#include <ntifs.h>

/*
 * Whether the calling process's token holds the administrators' group, enabled. A group that is there for
 * denying only does not count; an impersonation token of the calling thread is not looked at.
 */
BOOLEAN caller_is_administrator(void);

#endif
