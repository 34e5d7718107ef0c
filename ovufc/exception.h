#pragma once

#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace ov {

/// Asks for an exception whose code is the thread's last-error value.
struct from_last_error_t {
    explicit from_last_error_t() = default;
};
inline constexpr from_last_error_t from_last_error{};

/// What the utility code throws: a message and a Win32 error number, and nothing else.
///
/// The message is narrow text in the ANSI code page. It is shared between copies, so that copying cannot
/// fail.
///
/// A copy keeps the message and has code 0, on purpose: whoever catches by value, or keeps a copy, must not
/// act on the code. Whoever catches by reference sees the thrown object's own code, because a `throw` of a
/// fresh object builds it in place; `throw` of a named one throws a copy. There is no move beside the copy.
class exception : public std::runtime_error {
  public:
    /// Bad input: the code is ERROR_INVALID_PARAMETER.
    explicit exception(const std::string& message)
        : std::runtime_error(message), code(ERROR_INVALID_PARAMETER) {}

    /// A failed call: the code is what GetLastError says now. It need not be the status that the failed
    /// function returned, since not every function sets the last error; that one belongs in the message.
    exception(const std::string& message, from_last_error_t /*tag*/)
        : std::runtime_error(message), code(GetLastError()) {}

    exception(const exception& other) noexcept : std::runtime_error(other), code(0) {}
    exception& operator=(const exception& other) noexcept {
        std::runtime_error::operator=(other);
        code = 0;
        return *this;
    }
    ~exception() override = default;

    std::uint32_t code;
};

}  // namespace ov
