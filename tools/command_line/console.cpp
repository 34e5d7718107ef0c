#include "tools/command_line/console.h"

#include <windows.h>

#include <string>

namespace ov::command_line {
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

void print_note(std::wstring_view text) {
    write_line(STD_ERROR_HANDLE, text);
}

}  // namespace ov::command_line
