#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// What the registration table says, looked up in the registry.
namespace ov::registration {

/// The native view and the 32-bit one, as access flags.
inline constexpr REGSAM view_flags[] = {0, KEY_WOW64_32KEY};

/// Full path of the module under test.
[[nodiscard]] std::wstring module_path();

/// Fails the running test for each row that is not in the registry with its type and bytes, view by view, and
/// for each that is in a view that it is not written to.
void expect_registered();

/// The keys of the rows that are there, those of the 32-bit view with "32:" before them. A key that holds
/// other people's values too counts by its value.
[[nodiscard]] std::vector<std::wstring> registered_keys();

/// The keys named by the bare class ids, which unregistering leaves.
extern const std::wstring restore_name;
extern const std::wstring addons_name;
/// All that it leaves: those in both views, and the 32-bit copy of the types, which Wine keeps.
extern const std::vector<std::wstring> left_behind;
void remove_left_behind();

}  // namespace ov::registration
