#include "companions/devservice/files/text.h"

#include "ovufc/win/utf8.h"

namespace ov::devservice {

std::optional<std::string> to_utf8(std::wstring_view text) {
    return win::to_utf8(text, win::ill_formed::refused);
}

std::string to_utf8_lossy(std::wstring_view text) {
    return win::to_utf8(text).value_or(std::string());
}

std::optional<std::wstring> from_utf8(std::string_view text) {
    return win::from_utf8(text, win::ill_formed::refused);
}

}  // namespace ov::devservice
