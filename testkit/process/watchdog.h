#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::test {

/// Ends the process when a scope lasts too long, after it has written to the error stream where each thread
/// stands (module and offset of every frame): a test that hangs says where.
class watchdog : private noncopyable {
  public:
    /// What the process ends with.
    static constexpr UINT exit_code = 98;

    explicit watchdog(DWORD limit_ms);
    ~watchdog();

  private:
    static DWORD WINAPI watch(void* self);

    DWORD limit_ms_;
    win::unique_kernel_handle over_;
    win::unique_kernel_handle thread_;
};

}  // namespace ov::test
