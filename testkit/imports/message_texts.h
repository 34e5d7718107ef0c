#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "testkit/imports/format_message.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// Shows message numbers in place of the localised texts of one module, so that a test sees which message was
/// used: message 0x40001 reads "<40001>", and those that take a text "<40003 %s>" before it is filled in.
/// Puts itself into the module's import table; the module must have loaded its resource library, since
/// without one it asks for nothing.
class message_texts {
  public:
    explicit message_texts(HMODULE module);

    /// What message `number` reads while an instance is there.
    [[nodiscard]] static std::wstring of(std::uint32_t number);
    /// The same with its placeholder filled in.
    [[nodiscard]] static std::wstring of(std::uint32_t number, const std::wstring& argument);

  private:
    import_patch<format_message> patch_;
};

}  // namespace ov::test
