#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

namespace ov::stand_ins {

/// A function of this library and when it is wanted.
struct stand_in {
    const char* function;
    /// True when the system lacks the function.
    bool (*is_missing)() noexcept;
    FARPROC replacement;
};

/// Points those imports of `module` that the system lacks at this library's own functions, and says which:
///
///     for (const std::string& name : supply_missing(module)) ...
///
/// A function that the system has is never replaced, and one that the module does not import is not among
/// them. The module is kept loaded for the rest of the process; asked a second time for the same module, this
/// gives the list again. The thread has an apartment. Not for a module that another thread is just calling.
[[nodiscard]] std::vector<std::string> supply_missing(HMODULE module);

/// The same with a table of one's own, each time anew.
[[nodiscard]] std::vector<std::string> supply(HMODULE module, std::span<const stand_in> stand_ins);

}  // namespace ov::stand_ins
