#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace ov::test {

/// What stands below a registry key. Keys by their path; values by path, " : " and their name, with type and
/// bytes as text.
using registry_snapshot = std::map<std::wstring, std::wstring>;

/// Reads all below `subkey`, which stands first in every path. Keys that cannot be read are left out.
[[nodiscard]] registry_snapshot take_registry_snapshot(HKEY root, const std::wstring& subkey);

struct registry_difference {
    std::vector<std::wstring> added;
    std::vector<std::wstring> removed;
    std::vector<std::wstring> changed;
};
[[nodiscard]] registry_difference compare(const registry_snapshot& before, const registry_snapshot& after);

}  // namespace ov::test
