#pragma once

#include <optional>
#include <string>

#include "companions/orvdialog/protect/path_problem.h"
#include "companions/orvdialog/window/modal_dialog.h"

namespace ov::dialog {

/// Asks whether a folder is to be protected, or another path in its place; what cannot be protected is said
/// beside the choice and keeps the button grey. Shown with IDD_PROTECT; ends with IDOK or IDCANCEL.
class protect_dialog final : public modal_dialog {
  public:
    /// `is_protected`: the folder is protected already, and the menu offers to end that.
    protect_dialog(const dialog_texts& texts, std::wstring folder, bool is_protected);

    /// After IDOK: the path to protect when it is not the folder itself, else empty. At most 259 characters.
    [[nodiscard]] const std::wstring& object_path() const noexcept { return object_path_; }

  private:
    void on_open() override;
    void on_command(WORD control_id, WORD code) override;
    std::optional<LRESULT> on_message(UINT message, WPARAM wparam, LPARAM lparam) override;
    [[nodiscard]] SIZE least_size() const override;
    void lay_out(placing& controls, SIZE client) const override;

    SIZE put_all(placing& controls) const;
    [[nodiscard]] int inner_width() const;
    [[nodiscard]] int problem_height(int width) const;
    [[nodiscard]] bool other_is_chosen() const noexcept;
    [[nodiscard]] std::wstring typed_path() const;
    [[nodiscard]] std::wstring note() const;
    [[nodiscard]] std::wstring words_for(path_problem problem) const;
    void choose(int control_id);
    void on_edited();
    void browse();
    /// Says what is wrong with the choice; true when nothing is.
    bool check();
    void say(const std::wstring& problem);
    void accept();

    const std::wstring folder_;
    const bool is_protected_;
    std::wstring object_path_;
};

}  // namespace ov::dialog
