#include "tools/shellhost/console.h"

#include <array>

namespace ov::shellhost {

void print_error(std::wstring_view text) {
    print_note(L"shellhost: " + std::wstring(text));
}

std::wstring hexadecimal(std::uint32_t number) {
    constexpr std::wstring_view digits = L"0123456789ABCDEF";
    std::wstring text = L"0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += digits[number >> shift & 0xF];
    }
    return text;
}

std::wstring describe(HRESULT result) {
    std::wstring text = hexadecimal(static_cast<std::uint32_t>(result));
    if (SUCCEEDED(result)) {
        return text;
    }
    std::array<wchar_t, 256> message{};
    DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        static_cast<DWORD>(result), 0, message.data(), static_cast<DWORD>(message.size()), nullptr);
    while (length != 0 && (message[length - 1] == L' ' || message[length - 1] == L'.')) {
        --length;
    }
    if (length != 0) {
        text += L" (" + std::wstring(message.data(), length) + L")";
    }
    return text;
}

}  // namespace ov::shellhost
