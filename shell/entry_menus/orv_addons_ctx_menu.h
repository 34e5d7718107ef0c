#pragma once

#include "shell/entry_menus/entry_ctx_menu.h"

namespace ov::shell {

/// The verb of the "Addons" entry: asks, then shows the driver's last timestamp.
class OrvAddonsCtxMenu final : public EntryCtxMenu {
  private:
    [[nodiscard]] const wchar_t* verb_text() const noexcept override;
    void run() override;
};

}  // namespace ov::shell
