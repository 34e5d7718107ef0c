#pragma once

#include <string>

namespace ov::win {

/// What the C runtime's printf makes of `format`, at any length. When the runtime refuses the format, the
/// format itself. The arguments must fit the format, as everywhere with printf.
[[nodiscard]] std::string print_with_arguments(const char* format, ...);

/// What printf makes of a format that nobody supplied arguments for: "%%" is a percent sign, and every
/// conversion finds a zero or a null pointer, which the runtime prints as "0" or "(null)".
///
/// The texts that come here are other people's (the system's error texts), so a stray percent sign in one
/// must not make printf read arguments that do not exist, nor let "%n" write through one.
[[nodiscard]] std::string print_without_arguments(const std::string& format);

/// Either of the two, by whether there are arguments.
template <class... Arguments>
[[nodiscard]] std::string print_text(const std::string& format, const Arguments&... arguments) {
    if constexpr (sizeof...(Arguments) == 0) {
        return print_without_arguments(format);
    } else {
        return print_with_arguments(format.c_str(), arguments...);
    }
}

}  // namespace ov::win
