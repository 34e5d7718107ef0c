#pragma once

#include <windows.h>

namespace ov::test {

/// The type of `FormatMessageW`, for what takes its place. Spelt out, `va_list*` as the plain pointer that it
/// is: the compiler's `va_list` carries an attribute that a template argument cannot.
using format_message = DWORD WINAPI(DWORD, LPCVOID, DWORD, DWORD, LPWSTR, DWORD, char**);

}  // namespace ov::test
