#include "ovufc/win/printf_text.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ov::win {

namespace {

// Flags, width, precision and size prefixes of a conversion, in the runtime's meaning ("I64" among them).
constexpr const char* before_conversion_type = "-+ #0123456789.*hlLIw";

// A conversion takes a width, a precision and a value: no more than three arguments.
constexpr std::ptrdiff_t max_stars = 2;

// "%n" prints nothing and writes through its argument: left out, the text stays the same.
bool can_print(const std::string& conversion) {
    return conversion.back() != 'n' && std::ranges::count(conversion, '*') <= max_stars;
}

}  // namespace

std::string print_with_arguments(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = _vscprintf(format, arguments);
    va_end(arguments);
    if (length < 0) {
        return format;
    }
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    va_start(arguments, format);
    _vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    text.pop_back();
    return text;
}

std::string print_without_arguments(const std::string& format) {
    std::string text;
    std::size_t at = 0;
    while (at < format.size()) {
        const std::size_t percent = std::min(format.find('%', at), format.size());
        text.append(format, at, percent - at);
        if (percent == format.size()) {
            break;
        }
        const std::size_t type = format.find_first_not_of(before_conversion_type, percent + 1);
        if (type == std::string::npos) {
            break;  // an incomplete conversion: prints nothing
        }
        const std::string conversion = format.substr(percent, type + 1 - percent);
        if (can_print(conversion)) {
            constexpr std::intptr_t nothing = 0;
            text += print_with_arguments(conversion.c_str(), nothing, nothing, nothing);
        }
        at = type + 1;
    }
    return text;
}

}  // namespace ov::win
