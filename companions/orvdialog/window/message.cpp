#include "companions/orvdialog/window/message.h"

#include <array>

#include "companions/orvdialog/window/visual_styles.h"
#include "ovufc/i18n/message_ids.h"

namespace ov::dialog {

namespace {

constexpr UINT plain_style = MB_OK | MB_SETFOREGROUND | MB_TOPMOST;

bool show_in_language(HWND owner, const dialog_texts& texts, std::uint32_t number, UINT icon) noexcept {
    try {
        const UINT direction = texts.is_right_to_left() ? MB_RTLREADING | MB_RIGHT : 0;
        const std::wstring title = texts.text(i18n::message_ids::product_title);
        const std::wstring text = texts.text(number);
        MessageBoxW(owner, text.c_str(), title.c_str(), plain_style | icon | direction);
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace

void show_message(HWND owner, const dialog_texts* texts, std::uint32_t number, UINT icon) noexcept {
    const visual_styles styles;
    if (texts != nullptr && show_in_language(owner, *texts, number, icon)) {
        return;
    }
    std::array<wchar_t, 512> text;
    std::array<wchar_t, 64> title;
    read_own_text(number, text.data(), static_cast<DWORD>(text.size()));
    read_own_text(i18n::message_ids::product_title, title.data(), static_cast<DWORD>(title.size()));
    MessageBoxW(owner, text.data(), title.data(), plain_style | icon);
}

}  // namespace ov::dialog
