#pragma once

#include <windows.h>

#include <string>

#include "companions/devservice/records.h"

namespace ov::devservice {

/// The one JSON file in which a service_state outlives the process.
///
/// A save writes a new file beside and renames it over the old one: at every instant the file under its name
/// is one whole state, and an interrupted save leaves the state before it. Readers therefore need no lock;
/// those who change the state hold the state_lock from reading to saving.
class state_file {
  public:
    /// `folder` is the service's own folder; it is made by the first save.
    explicit state_file(const std::wstring& folder);

    /// A fresh state when there is no file yet. ERROR_FILE_CORRUPT when the file is not one of ours: it is
    /// then left as it is, for a person to look at.
    [[nodiscard]] DWORD load(service_state& state) const;

    /// Raises the state's revision and saves it.
    [[nodiscard]] DWORD save(service_state& state) const;

    [[nodiscard]] const std::wstring& path() const noexcept { return path_; }

  private:
    std::wstring folder_;
    std::wstring path_;
};

}  // namespace ov::devservice
