#pragma once

#include <windows.h>
#include <shlobj.h>

#include <optional>

namespace ov::shell {

/// The command offset that a host asks for; none for a verb given by name (our commands have no names) and
/// for a null `info`.
[[nodiscard]] std::optional<WORD> command_offset(const CMINVOKECOMMANDINFO* info) noexcept;

}  // namespace ov::shell
