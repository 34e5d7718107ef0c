#include "companions/devservice/command_line/console.h"

#include "companions/devservice/files/text.h"

namespace ov::devservice {
namespace {

void write_line(DWORD which, std::string_view line) {
    const std::string whole = std::string(line) + "\r\n";
    HANDLE output = GetStdHandle(which);
    DWORD mode = 0;
    DWORD written = 0;
    const std::optional<std::wstring> wide = from_utf8(whole);
    if (wide && GetConsoleMode(output, &mode)) {
        WriteConsoleW(output, wide->data(), static_cast<DWORD>(wide->size()), &written, nullptr);
    } else {
        WriteFile(output, whole.data(), static_cast<DWORD>(whole.size()), &written, nullptr);
    }
}

}  // namespace

void print(std::string_view line) {
    write_line(STD_OUTPUT_HANDLE, line);
}

void print_error(std::string_view line) {
    write_line(STD_ERROR_HANDLE, "orvsvc: " + std::string(line));
}

std::string describe(DWORD error) {
    wchar_t text[512] = {};
    const DWORD length_chars = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
        error, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
    std::wstring words(text, length_chars);
    while (!words.empty() && (words.back() == L' ' || words.back() == L'.')) {
        words.pop_back();
    }
    return to_utf8_lossy(words) + " (Windows error " + std::to_string(error) + ")";
}

}  // namespace ov::devservice
