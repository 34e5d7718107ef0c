#pragma once

#include <windows.h>
#include <shlobj.h>

#include <optional>

namespace ov::shell {

/// The command offset in `lpVerb`; none for a verb given by name there (our commands have no names) and for a
/// null `info`. The wide verb of the extended structure is ignored, on purpose: docs/menus.md says what a
/// host may do.
[[nodiscard]] std::optional<WORD> command_offset(const CMINVOKECOMMANDINFO* info) noexcept;

}  // namespace ov::shell
