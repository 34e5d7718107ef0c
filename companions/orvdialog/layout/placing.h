#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"

namespace ov::dialog {

/// Moves controls of a dialog, all at once at the end of its scope. Made without a dialog it moves nothing,
/// so that one function both lays out and measures.
class placing : private noncopyable, private nonmoveable {
  public:
    explicit placing(HWND dialog = nullptr) noexcept
        : dialog_(dialog), batch_(dialog == nullptr ? nullptr : BeginDeferWindowPos(16)) {}
    ~placing();

    void put(int control_id, int left, int top, int width, int height) noexcept;

  private:
    const HWND dialog_;
    HDWP batch_;
};

}  // namespace ov::dialog
