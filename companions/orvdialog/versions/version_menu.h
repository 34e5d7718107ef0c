#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "companions/orvdialog/texts/dialog_texts.h"
#include "ovufc/win/ui_handle.h"

namespace ov::dialog {

/// The menu of a row in the list of earlier versions: what the buttons do, and sorting, which otherwise takes
/// a mouse.
class version_menu {
  public:
    /// At most one of the two.
    struct choice {
        std::uint32_t action = 0;  // chronel_action_*; 0 for none
        std::optional<int> column;
    };

    version_menu(const dialog_texts& texts, int sorted_column, bool has_row);

    /// Shows the menu at a point of the screen and waits for a choice.
    [[nodiscard]] choice show(HWND owner, POINT at) const noexcept;
    [[nodiscard]] HMENU handle() const noexcept { return menu_.get(); }

  private:
    win::unique_menu menu_;
    bool right_to_left_;
};

}  // namespace ov::dialog
