#pragma once

#include <windows.h>

#include "ovufc/win/handle.h"

#include "ovufc/noncopyable.h"

namespace ov::stand_ins {

struct global_memory_traits {
    using type = HGLOBAL;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { GlobalFree(value); }
};
/// A movable block of global memory, as storage media carry it.
using unique_global = win::unique_handle<global_memory_traits>;

/// Holds a block of global memory locked for the length of a scope.
class [[nodiscard]] global_lock : private noncopyable {
  public:
    explicit global_lock(HGLOBAL memory) noexcept : memory_(memory), data_(GlobalLock(memory)) {}
    ~global_lock() {
        if (data_ != nullptr) {
            GlobalUnlock(memory_);
        }
    }

    /// Null when the block could not be locked.
    [[nodiscard]] void* data() const noexcept { return data_; }

  private:
    HGLOBAL memory_;
    void* data_;
};

}  // namespace ov::stand_ins
