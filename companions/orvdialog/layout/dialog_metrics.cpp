#include "companions/orvdialog/layout/dialog_metrics.h"

#include <algorithm>

#include "companions/orvdialog/layout/display.h"
#include "ovufc/noncopyable.h"

namespace ov::dialog {

namespace {

/// The screen with a font selected into it.
class measuring_dc : private noncopyable {
  public:
    explicit measuring_dc(HFONT font) noexcept
        : screen_(GetDC(nullptr)), former_(SelectObject(screen_.get(), font)) {}
    ~measuring_dc() { SelectObject(screen_.get(), former_); }

    [[nodiscard]] HDC get() const noexcept { return screen_.get(); }

  private:
    const win::unique_screen_dc screen_;
    const HGDIOBJ former_;
};

/// The average of the letters, as the system itself makes dialog units of a font.
SIZE average_character(HFONT font) noexcept {
    constexpr const wchar_t* letters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr int count = 52;
    const measuring_dc screen(font);
    SIZE all{};
    TEXTMETRICW metrics{};
    if (GetTextExtentPoint32W(screen.get(), letters, count, &all) == FALSE ||
        GetTextMetricsW(screen.get(), &metrics) == FALSE) {
        return {8, 16};
    }
    return {(all.cx / (count / 2) + 1) / 2, metrics.tmHeight};
}

RECT drawn(HFONT font, const std::wstring& text, int width, UINT format) noexcept {
    RECT area{0, 0, width, 0};
    DrawTextW(measuring_dc(font).get(), text.c_str(), -1, &area, format | DT_CALCRECT);
    return area;
}

}  // namespace

dialog_metrics::dialog_metrics(UINT dpi) noexcept : dpi_(dpi) {
    const LOGFONTW wanted = message_font(dpi);
    font_.reset(CreateFontIndirectW(&wanted));
    character_ = average_character(font_.get());
}

int dialog_metrics::across(int units) const noexcept {
    return MulDiv(units, character_.cx, 4);
}

int dialog_metrics::down(int units) const noexcept {
    return MulDiv(units, character_.cy, 8);
}

SIZE dialog_metrics::size_of(const std::wstring& text) const noexcept {
    const RECT area = drawn(font(), text, 0, DT_SINGLELINE);
    return {area.right, area.bottom};
}

int dialog_metrics::height_of(const std::wstring& text, int width) const noexcept {
    return drawn(font(), text, width, DT_WORDBREAK).bottom;
}

int dialog_metrics::button_width(const std::wstring& text) const noexcept {
    return std::max(across(50), static_cast<int>(size_of(text).cx) + across(12));
}

int dialog_metrics::from_96(int length) const noexcept {
    return MulDiv(length, static_cast<int>(dpi_), USER_DEFAULT_SCREEN_DPI);
}

int dialog_metrics::to_96(int length) const noexcept {
    return MulDiv(length, USER_DEFAULT_SCREEN_DPI, static_cast<int>(dpi_));
}

}  // namespace ov::dialog
