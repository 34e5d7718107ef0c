#include "companions/devservice/command_line/console.h"

#include "companions/devservice/files/text.h"
#include "tools/command_line/console.h"

namespace ov::devservice {

void print(std::string_view line) {
    command_line::print_line(line);
}

void print_error(std::string_view line) {
    command_line::print_note("orvsvc: " + std::string(line));
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
