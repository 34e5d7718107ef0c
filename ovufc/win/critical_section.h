#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"

namespace ov::win {

/// Owner of one critical section; its address is fixed for its life.
class critical_section : private noncopyable {
  public:
    /// Cannot fail: since Windows Vista InitializeCriticalSectionAndSpinCount always succeeds.
    explicit critical_section(DWORD spin_count) noexcept {
        InitializeCriticalSectionAndSpinCount(&section_, spin_count);
    }
    ~critical_section() { DeleteCriticalSection(&section_); }

  private:
    friend class critical_section_lock;
    CRITICAL_SECTION section_;
};

/// Holds a critical section for the length of a scope.
class [[nodiscard]] critical_section_lock : private noncopyable {
  public:
    explicit critical_section_lock(critical_section& held) noexcept : section_(held.section_) {
        EnterCriticalSection(&section_);
    }
    ~critical_section_lock() { LeaveCriticalSection(&section_); }

  private:
    CRITICAL_SECTION& section_;
};

}  // namespace ov::win
