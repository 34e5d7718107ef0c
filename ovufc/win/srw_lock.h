#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"

namespace ov::win {

/// Holds a slim reader/writer lock exclusively for the length of a scope.
class [[nodiscard]] exclusive_lock : private noncopyable {
  public:
    explicit exclusive_lock(SRWLOCK& lock) noexcept : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
    ~exclusive_lock() { ReleaseSRWLockExclusive(&lock_); }

  private:
    SRWLOCK& lock_;
};

/// Holds a slim reader/writer lock shared for the length of a scope.
class [[nodiscard]] shared_lock : private noncopyable {
  public:
    explicit shared_lock(SRWLOCK& lock) noexcept : lock_(lock) { AcquireSRWLockShared(&lock_); }
    ~shared_lock() { ReleaseSRWLockShared(&lock_); }

  private:
    SRWLOCK& lock_;
};

}  // namespace ov::win
