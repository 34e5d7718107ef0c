#pragma once

#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::bench {

/// Two threads and two events: what waking another thread and being woken by it costs here. The floor of
/// every exchange.
class round_trip : private noncopyable {
  public:
    round_trip();
    ~round_trip();

    /// There and back.
    void go() noexcept;

  private:
    static DWORD WINAPI answer(void* self) noexcept;

    win::unique_kernel_handle asked_;
    win::unique_kernel_handle answered_;
    win::unique_kernel_handle stop_;
    win::unique_kernel_handle thread_;
};

}  // namespace ov::bench
