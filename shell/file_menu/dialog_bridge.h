#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>

#include "ovufc/dialog/dialog_records.h"
#include "ovufc/win/handle.h"

/// The way to the product's dialog library: loaded for one dialog, freed right after it.
///
/// The dialogs run on the calling thread. What the library writes into its records is bounded by the records'
/// own sizes, whatever terminators it leaves out.
namespace ov::shell {

/// The folder-protection dialog's answer.
struct protect_answer {
    /// False as well when the library or its export is missing.
    bool confirmed = false;
    /// Empty when the user chose none.
    std::wstring object_path;
};

/// Shows the folder-protection dialog. Throws only std::bad_alloc.
[[nodiscard]] protect_answer show_protect_dialog(const std::wstring& folder_path, bool show_unprotect);

/// The chronel dialog; its library stays loaded until destruction, so that what the dialog returned is used
/// before the library goes.
class chronel_dialog {
  public:
    enum class outcome {
        not_shown,  ///< the library or its export is missing
        no_answer,  ///< cancelled, or the result's size is not set
        answered,
    };

    /// Loads the library. Throws only std::bad_alloc, as `show` does.
    chronel_dialog();

    /// `icon`, `file_path` and `chronel_list` (UTF-8, unparsed) are used during the call only.
    [[nodiscard]] outcome show(HICON icon, const std::wstring& file_path, const std::string& chronel_list);

    /// After `answered`: one of dialog::chronel_action_*, or an unknown number.
    [[nodiscard]] std::uint32_t action() const noexcept { return result_->action; }
    [[nodiscard]] std::string chronel_identifier() const;
    [[nodiscard]] std::wstring file_name() const;

  private:
    win::unique_library library_;
    std::unique_ptr<dialog::ChronelDialogResult> result_;
};

}  // namespace ov::shell
