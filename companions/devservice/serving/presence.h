#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::devservice {

/// What a running service shows to the commands on the same state folder: a small shared section.
struct presence_block {
    volatile LONG process_id;
    volatile LONG64 revision;  // of the state that it serves
};

/// The running service's side: the section, and the two events by which commands reach it. They vanish with
/// the process, however it ends, so a service that crashed does not look alive.
class presence : private noncopyable {
  public:
    explicit presence(const std::wstring& state_folder);
    ~presence();

    /// ERROR_SUCCESS, or ERROR_SERVICE_ALREADY_RUNNING when another process serves this folder, or what
    /// Windows says.
    [[nodiscard]] DWORD error() const noexcept { return error_; }

    /// Says that the state of this revision is the one being served now.
    void publish(std::uint64_t revision) noexcept;

    /// Set by a command that has changed the state file, and when the service shall end; resets itself.
    [[nodiscard]] HANDLE wake_event() const noexcept { return wake_.get(); }
    /// Whether the service shall end.
    [[nodiscard]] bool stopping() const noexcept;
    /// Asks this service to end; any thread.
    void ask_to_stop() const noexcept;

  private:
    win::unique_kernel_handle section_;
    win::unique_kernel_handle wake_;
    win::unique_kernel_handle stop_;
    presence_block* block_ = nullptr;
    DWORD error_ = ERROR_SUCCESS;
};

}  // namespace ov::devservice
