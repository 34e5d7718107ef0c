#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"

namespace ov::dialog {

/// Version 6 of the common controls for the windows that this thread makes in a scope, whatever the host's
/// program asks for: the activation context of this library's own manifest. Where it cannot be had, windows
/// look older and work all the same.
class visual_styles : private noncopyable, private nonmoveable {
  public:
    visual_styles() noexcept;
    ~visual_styles();

  private:
    HANDLE context_;
    ULONG_PTR cookie_ = 0;
    bool active_;
};

}  // namespace ov::dialog
