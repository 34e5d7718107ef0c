#pragma once

#include <windows.h>

#include <string>

#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::devservice {

/// Held by the one process that is changing the state of a folder, from reading it to saving it.
///
/// A named mutex: a process that ends while it holds the lock gives it up, and the state file is whole all
/// the same. The thread that took it releases it.
class [[nodiscard]] state_lock : private noncopyable {
  public:
    explicit state_lock(const std::wstring& state_folder);
    ~state_lock();

    /// False when another process has held the lock for a minute: nothing may be changed then.
    [[nodiscard]] bool held() const noexcept { return held_; }

  private:
    win::unique_kernel_handle mutex_;
    bool held_ = false;
};

}  // namespace ov::devservice
