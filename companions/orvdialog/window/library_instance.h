#pragma once

#include <windows.h>

#include <string>

namespace ov::dialog {

/// The instance of this library, for its resources.
[[nodiscard]] HINSTANCE library_instance() noexcept;

/// The folder that this library was loaded from, ending in a backslash; empty when it cannot be had. Throws
/// only std::bad_alloc.
[[nodiscard]] std::wstring library_folder();

}  // namespace ov::dialog
