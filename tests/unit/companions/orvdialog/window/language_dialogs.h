#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>

#include "companions/orvdialog/texts/dialog_texts.h"
#include "ovufc/win/handle.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {

/// The texts of one language of the built orvres.dll, of those too that are given to no user; or its English
/// ones written from right to left, as no language of ours is.
class language_texts : public dialog_texts {
  public:
    explicit language_texts(WORD language, bool right_to_left = false);
    using dialog_texts::text;
    [[nodiscard]] std::wstring text(std::uint32_t number) const override;
    [[nodiscard]] bool is_right_to_left() const noexcept override { return right_to_left_; }

  private:
    const WORD language_;
    const bool right_to_left_;
    const win::unique_library library_;
};

/// The protection dialog of a protected folder, made by this program.
[[nodiscard]] std::unique_ptr<shown_dialog> show_protection(const dialog_texts& texts);

/// The dialog of a file's versions, of which there are five.
[[nodiscard]] std::unique_ptr<shown_dialog> show_versions(const dialog_texts& texts);

/// Tells a window that it stands on a screen of so many dots per inch, at its place, and waits until it has
/// followed.
void set_dpi(HWND window, UINT dpi);

}  // namespace ov::dialog
