#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// Notes which slim reader/writer locks one module takes and gives back, through its import table:
///
///     const lock_trace locks(GetModuleHandleW(nullptr));
///     (void)protected_locations();
///     EXPECT_EQ(locks.taken(), (std::vector<lock_trace::hold>{{&cacheLock, lock_trace::mode::shared}}));
///
/// Only the constructing thread is noted; the locks themselves work as ever. One trace at a time.
class lock_trace : private noncopyable {
  public:
    enum class mode { shared, exclusive };
    struct hold {
        const SRWLOCK* lock;
        mode how;

        bool operator==(const hold&) const = default;
    };

    explicit lock_trace(HMODULE module);
    ~lock_trace();

    /// The locks taken so far, in order.
    [[nodiscard]] const std::vector<hold>& taken() const noexcept { return taken_; }
    /// Those held at this moment, in the order in which they were taken. Asking allocates nothing.
    [[nodiscard]] const std::vector<hold>& held() const noexcept { return held_; }
    /// How many were held at once at most.
    [[nodiscard]] std::size_t most_at_once() const noexcept { return most_at_once_; }

    void note_taken(const SRWLOCK* lock, mode how);
    void note_released(const SRWLOCK* lock, mode how);

    struct patches;

  private:
    std::vector<hold> taken_;
    std::vector<hold> held_;
    std::size_t most_at_once_ = 0;
    std::unique_ptr<patches> patches_;
};

}  // namespace ov::test
