#include "companions/orvdialog/texts/dialog_texts.h"

#include <array>

#include "companions/orvdialog/window/library_instance.h"
#include "ovufc/i18n/language_choice.h"

namespace ov::dialog {

namespace {

bool is_written_from_right(std::uint16_t language) noexcept {
    constexpr DWORD from_right = 1;
    DWORD layout = 0;
    return GetLocaleInfoW(MAKELCID(language, SORT_DEFAULT), LOCALE_IREADINGLAYOUT | LOCALE_RETURN_NUMBER,
                          reinterpret_cast<wchar_t*>(&layout), sizeof layout / sizeof(wchar_t)) != 0 &&
           layout == from_right;
}

}  // namespace

dialog_texts::dialog_texts(const std::wstring& resource_library) {
    if (library_.load(resource_library)) {
        const auto language = i18n::choose_language(i18n::candidate_language());
        right_to_left_ = language && is_written_from_right(*language);
    }
}

std::wstring dialog_texts::text(std::uint32_t number) const {
    std::wstring found = library_.lookup(number);
    if (found.empty()) {
        std::array<wchar_t, 1024> own;
        read_own_text(number, own.data(), static_cast<DWORD>(own.size()));
        found = own.data();
    }
    return found;
}

std::wstring dialog_texts::text(std::uint32_t number, std::wstring_view insert) const {
    std::wstring found = text(number);
    if (const auto place = found.find(L"%s"); place != std::wstring::npos) {
        found.replace(place, 2, insert);
    }
    return found;
}

void read_own_text(std::uint32_t number, wchar_t* text, DWORD size_chars) noexcept {
    if (FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE, library_instance(), number, i18n::fallback_language, text,
                       size_chars, nullptr) == 0) {
        *text = L'\0';
    }
}

std::wstring without_mnemonic(std::wstring item) {
    while (item.ends_with(L'.')) {
        item.pop_back();
    }
    const auto mark = item.find(L'&');
    if (mark == std::wstring::npos) {
        return item;
    }
    const bool in_brackets = mark > 0 && item[mark - 1] == L'(' && item.find(L')', mark) == mark + 2;
    return in_brackets ? item.erase(mark - 1, 4) : item.erase(mark, 1);
}

}  // namespace ov::dialog
