#pragma once

#include <string>

/// A file that is in use can neither be replaced nor deleted, but it can be renamed, even a loaded library.
/// So the installer has its files moved aside before it writes or removes them:
///
///     move_aside(path, mark);         // "name.dll" becomes "name.dll.MARK.old"
///     ...                             // the installer writes a new file, or none
///     put_back(path, mark);           // where it wrote none and the old one was not to go, or where it gave
///     up delete_old(path);               // at the end; what is in use, the system deletes at its next start
///
/// `mark` names the run of the installer: only what the same run moved is put back. Paths are full paths.
namespace ov::setup {

enum class outcome { nothing_to_do, done, failed };

[[nodiscard]] outcome move_aside(const std::wstring& path, const std::wstring& mark);

/// Does nothing where there is a file of that name.
[[nodiscard]] outcome put_back(const std::wstring& path, const std::wstring& mark);

/// Deletes what this run and earlier ones moved aside. `failed` means that some is in use.
[[nodiscard]] outcome delete_old(const std::wstring& path);

/// Whether a file that was moved aside from here is still there.
[[nodiscard]] bool is_old_one_left(const std::wstring& path);

/// Removes a folder that is empty, or, with `later`, will be so at the next start of the system.
[[nodiscard]] outcome remove_folder(const std::wstring& folder, bool later);

}  // namespace ov::setup
