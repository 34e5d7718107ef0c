#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace ov::devservice {

/// A command's side of a service that runs on the same state folder.
class remote {
  public:
    explicit remote(std::wstring state_folder);

    /// The process id of the running service, or 0.
    [[nodiscard]] DWORD process_id() const;

    /// Tells the service that the state file has a new revision and waits until it serves that one, so that
    /// whoever runs next sees the change. True when it does, or when no service runs; false after ten
    /// seconds.
    [[nodiscard]] bool tell(std::uint64_t revision) const;

    /// Asks the service to end and waits until its process has gone; false when it runs on after ten seconds.
    [[nodiscard]] bool stop() const;

  private:
    std::wstring state_folder_;
};

}  // namespace ov::devservice
