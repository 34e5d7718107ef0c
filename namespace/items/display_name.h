#pragma once

#include <windows.h>
#include <shtypes.h>

#include <string>

namespace ov::name_space {

/// The name under which an entry is shown: what the shell calls the location that it names or, where the
/// shell knows none, the last part of the stored name; without one trailing backslash. Empty for the entry of
/// another folder. Asks the shell, so the thread must have COM initialised to get more than the fallback.
/// Throws std::bad_alloc only.
[[nodiscard]] std::wstring display_name_of(PCUIDLIST_RELATIVE entry);

}  // namespace ov::name_space
