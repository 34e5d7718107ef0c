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
    explicit script_session(browser_window& window);
    ~script_session();

  private:
    HWND receiver_;
};

}  // namespace ov::shellhost
