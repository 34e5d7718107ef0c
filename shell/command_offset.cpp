#include "shell/command_offset.h"

namespace ov::shell {

std::optional<WORD> command_offset(const CMINVOKECOMMANDINFO* info) noexcept {
    if (info == nullptr || !IS_INTRESOURCE(info->lpVerb)) {
        return std::nullopt;
    }
    return LOWORD(reinterpret_cast<ULONG_PTR>(info->lpVerb));
}

}  // namespace ov::shell
