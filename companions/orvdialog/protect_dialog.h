#pragma once

#include <string>

#include "companions/orvdialog/modal_dialog.h"

namespace ov::dialog {

/// Asks whether a folder is to be protected, or another path in its place. Shown with IDD_PROTECT; ends with
/// IDOK or IDCANCEL.
class protect_dialog final : public modal_dialog {
  public:
    protect_dialog(std::wstring folder, bool mentions_unprotect)
        : folder_(std::move(folder)), mentions_unprotect_(mentions_unprotect) {}

    /// After IDOK: the path to protect when it is not the folder itself, else empty. At most 259 characters.
    [[nodiscard]] const std::wstring& object_path() const noexcept { return object_path_; }

  private:
    bool on_open() override;
    void on_command(WORD control_id, WORD code) override;

    void browse();
    void accept();

    const std::wstring folder_;
    const bool mentions_unprotect_;
    std::wstring object_path_;
};

}  // namespace ov::dialog
