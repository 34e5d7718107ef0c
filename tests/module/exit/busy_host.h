#pragma once

#include <string>

/// A host that ends while its threads are inside the module, played by this program as its own child.
namespace ov::test::busy_host {

/// Folders that the service side knows by their names: of the first it says that it is protected, about the
/// second it says nothing at all.
inline constexpr const wchar_t* protected_folder = L"exit-protected";
inline constexpr const wchar_t* silent_folder = L"exit-silent";

/// What the process ends with when nothing of ours stands in its way, and when its threads did not come where
/// they should be.
inline constexpr int ended_exit_code = 42;
inline constexpr int not_busy_exit_code = 3;

/// Below `folder` are the two above. Sends one thread each into a wait for the driver, a wait for the driver
/// with the cache locked, a wait for that lock, a message box and a dialog of orvdialog.dll, and ends the
/// process.
[[noreturn]] void play(const std::wstring& folder);

}  // namespace ov::test::busy_host
