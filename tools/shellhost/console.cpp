#include "tools/shellhost/console.h"

#include <array>

namespace ov::shellhost {

namespace {

std::string to_utf8(std::wstring_view text) {
    const auto length_chars = static_cast<int>(text.size());
    const int size_bytes =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length_chars, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size_bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length_chars, result.data(), size_bytes, nullptr, nullptr);
    return result;
}

void write_line(DWORD stream, std::wstring_view text) {
    const std::wstring line = std::wstring(text) + L"\n";
    const HANDLE output = GetStdHandle(stream);
    DWORD written = 0;
    DWORD console_mode = 0;
    if (GetConsoleMode(output, &console_mode)) {
        WriteConsoleW(output, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
        return;
    }
    const std::string bytes = to_utf8(line);
    WriteFile(output, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

void print_line(std::wstring_view text) {
    write_line(STD_OUTPUT_HANDLE, text);
}

void print_error(std::wstring_view text) {
    write_line(STD_ERROR_HANDLE, L"shellhost: " + std::wstring(text));
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
