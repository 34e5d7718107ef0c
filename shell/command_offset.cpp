#include "shell/command_offset.h"

#include <shellapi.h>

namespace ov::shell {

namespace {

// A host of the wide form may give the name there alone and leave the narrow verb null, which would read as
// offset 0.
bool has_wide_name(const CMINVOKECOMMANDINFO& info) noexcept {
    if (info.cbSize < sizeof(CMINVOKECOMMANDINFOEX) || (info.fMask & CMIC_MASK_UNICODE) == 0) {
        return false;
    }
    return !IS_INTRESOURCE(reinterpret_cast<const CMINVOKECOMMANDINFOEX&>(info).lpVerbW);
}

}  // namespace

std::optional<WORD> command_offset(const CMINVOKECOMMANDINFO* info) noexcept {
    if (info == nullptr || !IS_INTRESOURCE(info->lpVerb) || has_wide_name(*info)) {
        return std::nullopt;
    }
    return LOWORD(reinterpret_cast<ULONG_PTR>(info->lpVerb));
}

}  // namespace ov::shell
