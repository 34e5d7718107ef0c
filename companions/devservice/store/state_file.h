#pragma once

#include <windows.h>

#include <string>

#include "companions/devservice/store/records.h"

namespace ov::devservice {

/// The one JSON file in which a service_state outlives the process.
///
/// A save writes a new file beside and renames it over the old one: at every instant the file under its name
/// is one whole state, and an interrupted save leaves the state before it. Readers therefore need no lock;
/// those who change the state hold the state_lock from reading to saving. A reader keeps the file from being
/// replaced for the moment in which it has it open; a save waits for that, ten seconds at most.
class state_file {
  public:
    /// Far above what sixteen copies of a hundred thousand files take.
    static constexpr std::uint64_t default_limit_bytes = 512ull * 1024 * 1024;

    /// `folder` is the service's own folder; it is made by the first save. A file beyond the limit is neither
    /// loaded nor saved.
    explicit state_file(const std::wstring& folder, std::uint64_t limit_bytes = default_limit_bytes);

    /// A fresh state when there is no file yet. ERROR_FILE_CORRUPT when the file is not one of ours: it is
    /// then left as it is, for a person to look at.
    [[nodiscard]] DWORD load(service_state& state) const;

    /// Raises the state's revision and saves it. What could not be loaded again is not saved, and the file
    /// stays as it is: ERROR_INVALID_NAME for text that cannot be written, ERROR_FILE_TOO_LARGE.
    [[nodiscard]] DWORD save(service_state& state) const;

    [[nodiscard]] const std::wstring& path() const noexcept { return path_; }

  private:
    std::wstring folder_;
    std::wstring path_;
    std::uint64_t limit_bytes_;
};

}  // namespace ov::devservice
