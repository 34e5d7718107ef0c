#pragma once

#include <windows.h>

#include <string>

#include "ovufc/win/ui_handle.h"

namespace ov::dialog {

/// The measures of a dialog at a number of dots per inch: its font, lengths in dialog units of that font (a
/// quarter of a character across, an eighth down) and the room that texts take in it, in pixels. Texts are
/// measured as controls draw them, with "&" as the mark of a key.
/// https://learn.microsoft.com/windows/win32/uxguide/vis-layout
class dialog_metrics {
  public:
    explicit dialog_metrics(UINT dpi) noexcept;

    [[nodiscard]] UINT dpi() const noexcept { return dpi_; }
    [[nodiscard]] HFONT font() const noexcept { return font_.get(); }
    [[nodiscard]] int across(int units) const noexcept;
    [[nodiscard]] int down(int units) const noexcept;
    /// Of a text in one line.
    [[nodiscard]] SIZE size_of(const std::wstring& text) const noexcept;
    /// Of a text that is broken into lines of at most `width`.
    [[nodiscard]] int height_of(const std::wstring& text, int width) const noexcept;
    [[nodiscard]] int button_width(const std::wstring& text) const noexcept;
    /// A length at 96 dots per inch, at this number.
    [[nodiscard]] int from_96(int length) const noexcept;
    [[nodiscard]] int to_96(int length) const noexcept;

  private:
    UINT dpi_;
    win::unique_font font_;
    SIZE character_;
};

}  // namespace ov::dialog
