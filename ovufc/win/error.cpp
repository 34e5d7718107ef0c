#include "ovufc/win/error.h"

#include <windows.h>

#include <array>

namespace ov::win {

namespace {

// The longest system text that is taken, in characters.
constexpr DWORD text_limit_chars = 1024;

}  // namespace

std::string format_system_error(std::uint32_t number, const std::string& context) {
    std::array<char, text_limit_chars + 1> buffer{};
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, number, 0, buffer.data(),
                                        text_limit_chars, nullptr);
    buffer.back() = '\0';
    std::string text = length != 0 ? buffer.data() : "Unknown error";
    if (!context.empty()) {
        text += " (" + context + ")";
    }
    return text;
}

std::string file_name_of(const std::string& path) {
    if (path.empty()) {
        return "Unknown File";
    }
    // npos + 1 is 0: a path without a backslash is returned whole.
    return path.substr(path.rfind('\\') + 1);
}

std::string begin_error_message(const std::string& prefix) {
    return prefix.empty() ? std::string() : prefix + ": ";
}

std::string add_location(const std::string& message, const std::string& path, std::int32_t line,
                         const std::string& function) {
    if (message.empty()) {
        return message;
    }
    return message + " (" + function + ", " + file_name_of(path) + ", " + std::to_string(line) + ")";
}

}  // namespace ov::win
