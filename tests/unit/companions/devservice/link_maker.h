#pragma once

#include <string>

namespace ov::devservice {

/// Symbolic links for tests. Wine 8 makes none and takes what a link to a file leads to for the link itself,
/// so the system below it is asked. Both paths are clean paths; what cannot be done fails the running test.
void make_link(const std::wstring& path, const std::wstring& target);

/// Removes a link, and nothing that it leads to.
void remove_link(const std::wstring& path);

}  // namespace ov::devservice
