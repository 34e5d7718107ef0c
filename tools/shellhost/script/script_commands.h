#pragma once

#include <string>
#include <vector>

#include "tools/shellhost/window/browser_window.h"

namespace ov::shellhost {

/// What a script command answers: lines of text, and whether it worked.
struct script_reply {
    std::vector<std::wstring> lines;
    /// Why the command did not work; empty when it did.
    std::wstring error;
};

/// Runs one command of a script on the window; to be called by the window's thread, also from within a menu's
/// or a message box's own message loop. Commands that click return before the click has been answered.
[[nodiscard]] script_reply run_script_command(browser_window& window, const std::wstring& line);

/// A text that changes as long as the window has not settled.
[[nodiscard]] std::wstring state_of(const browser_window& window);

}  // namespace ov::shellhost
