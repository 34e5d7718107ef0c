#pragma once

#include <string>
#include <vector>

/// The registry layout, call by call and byte by byte, written out here independently of the module's own
/// tables. In the lines of testkit/registry/registry_watch.h.
namespace ov::test {

/// Where expected_registration takes the module to be.
inline constexpr const wchar_t* expected_module_path = L"C:\\Program Files\\Orvane\\orvshellext.dll";

/// Both passes of a registration in which every call succeeds.
[[nodiscard]] std::vector<std::string> expected_registration();
/// A removal in which every key and value is there.
[[nodiscard]] std::vector<std::string> expected_removal();
/// The shell being told, at the end of either (shell_double.h).
[[nodiscard]] std::vector<std::string> expected_notice();

}  // namespace ov::test
