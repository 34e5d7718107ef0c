#include "service/text.h"

#include "ovufc/win/utf8.h"

namespace ov::service {
namespace {

template <class Text>
Text up_to_nul(Text text) {
    const auto nul = text.find(typename Text::value_type{});
    if (nul != Text::npos) {
        text.resize(nul);
    }
    return text;
}

}  // namespace

std::string to_utf8(std::wstring_view text) {
    return up_to_nul(win::to_utf8(text).value_or(std::string()));
}

std::wstring from_utf8(std::string_view text) {
    return up_to_nul(win::from_utf8(text).value_or(std::wstring()));
}

std::wstring_view from_utf8(std::string_view text, wchar_t* room) noexcept {
    const std::wstring_view converted(room, win::from_utf8(text, room));
    return converted.substr(0, converted.find(L'\0'));
}

}  // namespace ov::service
