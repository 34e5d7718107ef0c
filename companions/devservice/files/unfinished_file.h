#pragma once

#include <windows.h>

#include <string>

#include "ovufc/win/handle.h"

namespace ov::devservice {

/// A new file that is gone again, however its process ends, unless it was finished. So a roll-back that is
/// killed leaves no half-written file in a person's folder; one killed at the very moment after the file was
/// made, before the system knows, leaves an empty one.
///
///     unfinished_file file;
///     if (file.make(path) == ERROR_SUCCESS && write(file.get())) { error = file.finish(); }
class unfinished_file {
  public:
    /// A Windows error code; ERROR_FILE_EXISTS when something of that name is there.
    [[nodiscard]] DWORD make(const std::wstring& path);

    [[nodiscard]] HANDLE get() const noexcept { return file_.get(); }

    /// Flushes the file to the disk, lets it stay, and closes it. On an error it is gone.
    [[nodiscard]] DWORD finish();

  private:
    win::unique_file file_;
};

}  // namespace ov::devservice
