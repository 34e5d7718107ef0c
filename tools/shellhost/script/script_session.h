#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"
#include "tools/shellhost/window/browser_window.h"

namespace ov::shellhost {

/// Lets a script drive the window: reads commands from standard input, one a line in UTF-8, and answers each
/// on standard output with its lines and then "ok" or "error: " and why. The end of the input closes the
/// window.
///
/// A thread of its own reads, waits and writes; the window's thread does the rest, also while a menu or a
/// message box is open. The thread is left behind when the program ends.
class script_session : noncopyable, nonmoveable {
  public:
    /// `says_ready` prints "ready" and the title once the window has settled; `takes_commands` reads a
    /// script.
    script_session(browser_window& window, bool says_ready, bool takes_commands);
    ~script_session();

  private:
    HWND receiver_ = nullptr;
};

}  // namespace ov::shellhost
