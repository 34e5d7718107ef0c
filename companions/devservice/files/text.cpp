#include "companions/devservice/files/text.h"

#include <windows.h>

namespace ov::devservice {
namespace {

std::optional<std::string> narrow(std::wstring_view text, DWORD flags) {
    if (text.empty()) {
        return std::string();
    }
    const int length_chars = static_cast<int>(text.size());
    const int size_bytes =
        WideCharToMultiByte(CP_UTF8, flags, text.data(), length_chars, nullptr, 0, nullptr, nullptr);
    if (size_bytes <= 0) {
        return std::nullopt;
    }
    std::string result(static_cast<std::size_t>(size_bytes), '\0');
    WideCharToMultiByte(CP_UTF8, flags, text.data(), length_chars, result.data(), size_bytes, nullptr,
                        nullptr);
    return result;
}

}  // namespace

std::optional<std::string> to_utf8(std::wstring_view text) {
    return narrow(text, WC_ERR_INVALID_CHARS);
}

std::string to_utf8_lossy(std::wstring_view text) {
    return narrow(text, 0).value_or(std::string());
}

std::optional<std::wstring> from_utf8(std::string_view text) {
    if (text.empty()) {
        return std::wstring();
    }
    const int size_bytes = static_cast<int>(text.size());
    const int length_chars =
        MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size_bytes, nullptr, 0);
    if (length_chars <= 0) {
        return std::nullopt;
    }
    std::wstring result(static_cast<std::size_t>(length_chars), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size_bytes, result.data(), length_chars);
    return result;
}

}  // namespace ov::devservice
