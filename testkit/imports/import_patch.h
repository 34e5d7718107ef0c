#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// True when `module` imports `function` by name from a DLL that matches `dll_pattern` (see import_patch).
[[nodiscard]] bool imports(HMODULE module, const char* dll_pattern, const char* function);

/// The names of all functions that `module` imports by name from DLLs that match.
[[nodiscard]] std::vector<std::string> imported_functions(HMODULE module, const char* dll_pattern);

/// The slots of one imported function in the import table of one module, pointed elsewhere until destruction.
/// Use it through import_patch, which knows the function's type.
class import_slots : private noncopyable {
  public:
    import_slots(HMODULE module, const char* dll_pattern, const char* function, FARPROC replacement);
    ~import_slots();

    [[nodiscard]] FARPROC original() const noexcept { return saved_.front().value; }
    /// How many slots were found: more than one when several descriptors name the function.
    [[nodiscard]] std::size_t count() const noexcept { return saved_.size(); }

  private:
    struct saved_slot {
        std::byte* address;
        FARPROC value;
    };
    std::vector<saved_slot> saved_;
};

/// Replaces an imported function of one loaded module for the length of a scope:
///
///     import_patch<decltype(MessageBoxW)> patch(module, "user32.dll", "MessageBoxW",
///                                               [](HWND, LPCWSTR, LPCWSTR, UINT) { return IDOK; });
///
/// `module` may be a DLL or the program itself (GetModuleHandleW(nullptr)); it must stay loaded as long as
/// the patch. Only calls that this module makes are affected; what other modules call is not. `dll_pattern`
/// is matched without regard to case against the DLL names of the import table; "*" and "?" are wild cards
/// and
/// ";" separates several patterns ("ole32.dll;api-ms-win-core-com-*"). Patches of one function nest; they
/// must be taken back in reverse order, as scopes do.
///
/// The compiler takes an import slot for a constant and may read it once for several calls of one function:
/// code that calls the same import before and after a patch in one body does so through a function that is
/// not inlined.
///
/// Throws std::runtime_error, naming module, DLL and function, when the module does not import the function
/// by that name: a test that replaces nothing must not pass unnoticed. Not for a module that another thread
/// is just calling through the slot.
template <class Function>
class import_patch {
  public:
    import_patch(HMODULE module, const char* dll_pattern, const char* function, Function* replacement)
        : slots_(module, dll_pattern, function,
                 reinterpret_cast<FARPROC>(reinterpret_cast<void*>(replacement))) {}

    /// What the module called before.
    [[nodiscard]] Function* original() const noexcept {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(slots_.original()));
    }

  private:
    import_slots slots_;
};

}  // namespace ov::test
