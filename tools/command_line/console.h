#pragma once

#include <string_view>

namespace ov::command_line {

/// Writes a line of text: to a console as it is, into a pipe or file in UTF-8, so that a script can read it;
/// at once, unbuffered. What was asked for goes to standard output, whatever is said besides to standard
/// error.
void print_line(std::wstring_view text);
void print_note(std::wstring_view text);
/// The same for text that is UTF-8 already.
void print_line(std::string_view utf8);
void print_note(std::string_view utf8);

}  // namespace ov::command_line
