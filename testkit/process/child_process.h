#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "ovufc/win/handle.h"

namespace ov::test {

/// Full path of the running test program: it can be its own child, told by its arguments what to play.
[[nodiscard]] std::wstring this_program();

/// One child process. Killed by destruction if it still runs then.
class child_process {
  public:
    /// Starts `program` with `arguments`, each passed on whole whatever it holds; under `token` when there is
    /// one. Throws std::runtime_error when it cannot be started.
    child_process(const std::wstring& program, const std::vector<std::wstring>& arguments,
                  HANDLE token = nullptr);
    child_process(child_process&&) noexcept = default;
    child_process& operator=(child_process&&) = delete;
    ~child_process();

    /// The exit code, or nothing when the child still runs after `timeout_ms`.
    [[nodiscard]] std::optional<DWORD> wait(DWORD timeout_ms);

    /// Ends it as a crash would, without any clean-up of its own, and waits until it has ended.
    void kill();

    [[nodiscard]] DWORD id() const noexcept { return id_; }

  private:
    win::unique_kernel_handle process_;
    DWORD id_ = 0;
};

}  // namespace ov::test
