#pragma once

#include <cstdint>
#include <string>

#include "ovufc/win/printf_text.h"

/// Builds the messages of ov::exception: narrow text in the ANSI code page. The helpers keep no state and may
/// be called from any thread; they fail only when memory runs out (std::bad_alloc).
namespace ov::win {

/// The system's own text for an error number, with the line break that system texts end in, and then, when
/// there is a `context`, " (context)". A number that the system has no plain text for is "Unknown error".
///
/// Inserts (%1) are not ignored, so a text that wants some counts as unknown. See FormatMessageA.
[[nodiscard]] std::string format_system_error(std::uint32_t number, const std::string& context = {});

/// The part of `path` after its last backslash; the whole path if there is none. "Unknown File" if empty.
[[nodiscard]] std::string file_name_of(const std::string& path);

/// How a message begins: "prefix: ", or nothing without a prefix.
[[nodiscard]] std::string begin_error_message(const std::string& prefix);

/// `message` and then " (function, file, line)"; an empty message stays empty.
[[nodiscard]] std::string add_location(const std::string& message, const std::string& path, std::int32_t line,
                                       const std::string& function);

/// "prefix: " if there is a prefix, then a blank and the printed text if there is a format. Prefix and text
/// together therefore have two blanks between them, kept on purpose. `format` and its arguments mean what
/// they mean to printf; a format that comes without arguments is safe whatever it holds (printf_text.h).
template <class... Arguments>
[[nodiscard]] std::string format_error_message(const std::string& prefix, const std::string& format,
                                               const Arguments&... arguments) {
    std::string message = begin_error_message(prefix);
    if (!format.empty()) {
        message += ' ';
        message += print_text(format, arguments...);
    }
    return message;
}

/// The same, followed by the place in the source: the file name alone, without its directories.
template <class... Arguments>
[[nodiscard]] std::string format_located_message(const std::string& path, std::int32_t line,
                                                 const std::string& function, const std::string& prefix,
                                                 const std::string& format, const Arguments&... arguments) {
    return add_location(format_error_message(prefix, format, arguments...), path, line, function);
}

}  // namespace ov::win
