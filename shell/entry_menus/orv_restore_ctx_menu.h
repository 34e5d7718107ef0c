#pragma once

#include "shell/entry_menus/entry_ctx_menu.h"

namespace ov::shell {

/// The verb of the "One Click Restore" entry: restores the protected data to the first restore point that the
/// driver lists, after an administrator's consent and two confirmations.
///
/// While the command runs, `restoreInProgress` is set: a second restore in the same process ends at once
/// silently, and the file and folder menu offers nothing.
class OrvRestoreCtxMenu final : public EntryCtxMenu {
  private:
    [[nodiscard]] const wchar_t* verb_text() const noexcept override;
    void run() override;
};

}  // namespace ov::shell
