#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "ovufc/noncopyable.h"

namespace ov::i18n {

/// The source of every localised text: one message table, one language for the whole process.
///
/// Empty until `load` has found a library signed by the maker; until then, and for a message that the library
/// does not hold, every text is empty. The library stays loaded until destruction. All members may be called
/// from any thread: loading excludes fetching. `load` never throws; `lookup` and `format` throw only
/// std::bad_alloc.
class rosetta_stone : private noncopyable, private nonmoveable {
  public:
    rosetta_stone() noexcept = default;
    virtual ~rosetta_stone();

    /// Loads the resource library at `path` and chooses the language. True when this call loaded it; false
    /// when one was loaded already, the signer is not the maker, or loading failed.
    bool load(const std::wstring& path) noexcept;

    /// The text of message `number`: at most 2047 characters, empty when there is none. The message table is
    /// read with inserts honoured, so a text that holds an insert sequence comes out empty.
    [[nodiscard]] std::wstring lookup(std::uint32_t number) const;

    /// The text of message `number` used as a wide printf format in the Microsoft meaning ("%s" takes a wide
    /// string); empty when the text is empty.
    [[nodiscard]] std::wstring format(std::uint32_t number, ...) const;

  private:
    HMODULE library = nullptr;
    std::uint16_t language = 0;
    mutable SRWLOCK lock = SRWLOCK_INIT;
};

}  // namespace ov::i18n
