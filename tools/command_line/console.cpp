#include "tools/command_line/console.h"

#include <windows.h>

#include <string>

#include "ovufc/win/utf8.h"

namespace ov::command_line {
namespace {

void write_line(DWORD stream, const std::string& text) {
    const std::string line = text + "\n";
    const HANDLE output = GetStdHandle(stream);
    DWORD written = 0;
    DWORD console_mode = 0;
    if (GetConsoleMode(output, &console_mode)) {
        const std::wstring wide = win::from_utf8(line).value_or(std::wstring());
        WriteConsoleW(output, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
        return;
    }
    WriteFile(output, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

}  // namespace

void print_line(std::wstring_view text) {
    print_line(win::to_utf8(text).value_or(std::string()));
}

void print_note(std::wstring_view text) {
    print_note(win::to_utf8(text).value_or(std::string()));
}

void print_line(std::string_view utf8) {
    write_line(STD_OUTPUT_HANDLE, std::string(utf8));
}

void print_note(std::string_view utf8) {
    write_line(STD_ERROR_HANDLE, std::string(utf8));
}

}  // namespace ov::command_line
