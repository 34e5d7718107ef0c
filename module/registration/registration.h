#pragma once

#include <windows.h>

/// How the shell finds the module: its entries in the registry, described in docs/registry-layout.md.
///
/// Both run on the caller's thread, keep no state and show nothing. Writing to HKEY_CLASSES_ROOT and
/// HKEY_LOCAL_MACHINE takes an administrator.
namespace ov::registration {

/// Writes every entry in the native and in the 32-bit view, then tells the shell that the desktop changed.
/// S_OK, or E_UNEXPECTED when a step failed: what had been written is then removed. Entries that are there
/// already are overwritten.
[[nodiscard]] HRESULT register_server() noexcept;

/// Removes the entries and tells the shell. S_OK, also when there were none; E_UNEXPECTED when a key could
/// not be deleted: the steps after that one have not run.
[[nodiscard]] HRESULT unregister_server() noexcept;

}  // namespace ov::registration
