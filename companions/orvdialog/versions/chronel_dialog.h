#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "companions/orvdialog/chronels/chronel_list.h"
#include "companions/orvdialog/versions/version_rows.h"
#include "companions/orvdialog/window/modal_dialog.h"
#include "ovufc/dialog/dialog_records.h"
#include "ovufc/win/ui_handle.h"

namespace ov::dialog {

/// Lists the earlier versions of a file and lets the user open or restore one. Shown with IDD_CHRONELS; ends
/// with IDOK when `fill` has something to write, else with IDCANCEL.
class chronel_dialog final : public modal_dialog {
  public:
    /// `icon` stays the caller's; an invalid one is not shown.
    chronel_dialog(const dialog_texts& texts, std::wstring file_path, HICON icon, chronel_list chronels);

    /// After IDOK: writes the user's choice, the size field last.
    void fill(ChronelDialogResult& result) const noexcept;

  private:
    void on_open() override;
    void on_command(WORD control_id, WORD code) override;
    LRESULT on_notify(NMHDR& notification) override;
    std::optional<LRESULT> on_message(UINT message, WPARAM wparam, LPARAM lparam) override;
    void on_metrics() override;
    [[nodiscard]] SIZE least_size() const override;
    [[nodiscard]] SIZE first_size() const override;
    void lay_out(placing& controls, SIZE client) const override;

    void show_icon() noexcept;
    void enable_buttons() noexcept;
    void choose(std::uint32_t action);
    void show_menu(POINT at);
    [[nodiscard]] int button_row_width() const;

    const std::wstring file_path_;
    const HICON icon_;
    const chronel_list chronels_;
    version_rows rows_;
    win::unique_icon small_icon_;
    chronel chosen_;
    std::uint32_t action_ = 0;
};

}  // namespace ov::dialog
