#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "companions/orvdialog/chronel_list.h"
#include "companions/orvdialog/modal_dialog.h"
#include "ovufc/dialog/dialog_records.h"
#include "ovufc/win/ui_handle.h"

namespace ov::dialog {

/// Lists the earlier versions of a file and lets the user open or restore one. Shown with IDD_CHRONELS; ends
/// with IDOK when `fill` has something to write, else with IDCANCEL.
class chronel_dialog final : public modal_dialog {
  public:
    /// `icon` stays the caller's; one that is no icon shows as none.
    chronel_dialog(std::wstring file_path, HICON icon, std::vector<chronel> chronels)
        : file_path_(std::move(file_path)), icon_(icon), chronels_(std::move(chronels)) {}

    /// After IDOK: writes the user's choice, the size field last.
    void fill(ChronelDialogResult& result) const noexcept;

  private:
    bool on_open() override;
    void on_command(WORD control_id, WORD code) override;
    LRESULT on_notify(NMHDR& notification) override;

    [[nodiscard]] int selected_row() const noexcept;
    void enable_buttons() noexcept;
    void choose(std::uint32_t action);

    const std::wstring file_path_;
    const HICON icon_;
    const std::vector<chronel> chronels_;
    win::unique_icon shown_icon_;
    const chronel* chosen_ = nullptr;
    std::uint32_t action_ = 0;
};

}  // namespace ov::dialog
