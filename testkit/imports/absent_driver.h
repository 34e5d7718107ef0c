#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// For one module, the driver is not installed while this lives: its attempts to open the device fail,
/// through its import table. A port that is open stays open. One at a time.
class absent_driver : private noncopyable {
  public:
    explicit absent_driver(HMODULE module);
    ~absent_driver();

    /// How often the device was to be opened.
    [[nodiscard]] int opens() const noexcept { return opens_; }

  private:
    static HANDLE WINAPI open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                              DWORD disposition, DWORD flags, HANDLE pattern);

    int opens_ = 0;
    import_patch<decltype(CreateFileW)> patch_;
};

}  // namespace ov::test
