#include "companions/devdriver/caller.h"

#define GROUPS_TAG 0x7267724Fu /* "Orgr" in a pool dump */
/* From winnt.h, which cannot be included beside the driver headers. */
#define GROUP_ENABLED 0x00000004u
#define GROUP_USE_FOR_DENY_ONLY 0x00000010u
#define GROUPS_LIMIT_BYTES 65536u

/*
 * SeTokenIsAdmin would say it in one call; Wine lacks it, so the token's groups are read here. Wine knows no
 * elevation by consent: every user's token is an administrator's unless a program gives the right away.
 */
static HANDLE open_caller_token(void) {
    CLIENT_ID id = {.UniqueProcess = PsGetCurrentProcessId(), .UniqueThread = NULL};
    OBJECT_ATTRIBUTES attributes;
    InitializeObjectAttributes(&attributes, NULL, OBJ_KERNEL_HANDLE, NULL, NULL);
    HANDLE process;
    if (!NT_SUCCESS(ZwOpenProcess(&process, PROCESS_ALL_ACCESS, &attributes, &id))) {
        return NULL;
    }
    HANDLE token;
    if (!NT_SUCCESS(ZwOpenProcessToken(process, TOKEN_QUERY, &token))) {
        token = NULL;
    }
    ZwClose(process);
    return token;
}

/* S-1-5-32-544 */
static BOOLEAN is_administrators(const SID* sid) {
    static const UCHAR nt_authority[6] = {0, 0, 0, 0, 0, 5};
    return sid->Revision == SID_REVISION && sid->SubAuthorityCount == 2 &&
           RtlCompareMemory(&sid->IdentifierAuthority, nt_authority, sizeof nt_authority) ==
               sizeof nt_authority &&
           sid->SubAuthority[0] == SECURITY_BUILTIN_DOMAIN_RID &&
           sid->SubAuthority[1] == DOMAIN_ALIAS_RID_ADMINS;
}

static BOOLEAN holds_administrators(const TOKEN_GROUPS* groups) {
    for (ULONG index = 0; index < groups->GroupCount; ++index) {
        const SID_AND_ATTRIBUTES* group = &groups->Groups[index];
        if ((group->Attributes & GROUP_ENABLED) != 0 && (group->Attributes & GROUP_USE_FOR_DENY_ONLY) == 0 &&
            is_administrators(group->Sid)) {
            return TRUE;
        }
    }
    return FALSE;
}

BOOLEAN caller_is_administrator(void) {
    BOOLEAN answer = FALSE;
    HANDLE token = open_caller_token();
    if (token == NULL) {
        return FALSE;
    }
    ULONG bytes = 0;
    ZwQueryInformationToken(token, TokenGroups, NULL, 0, &bytes);
    if (bytes != 0 && bytes <= GROUPS_LIMIT_BYTES) {
        TOKEN_GROUPS* groups = ExAllocatePoolWithTag(PagedPool, bytes, GROUPS_TAG);
        if (groups != NULL) {
            answer = NT_SUCCESS(ZwQueryInformationToken(token, TokenGroups, groups, bytes, &bytes)) &&
                     holds_administrators(groups);
            ExFreePoolWithTag(groups, GROUPS_TAG);
        }
    }
    ZwClose(token);
    return answer;
}
