#pragma once

#include <windows.h>

namespace ov::shellhost {

/// Commands of the browser window's menu bar and keys.
enum window_command : int {
    command_back = 100,
    command_forward,
    command_up,
    command_home,
    command_refresh,
    command_large_icons,
    command_list,
    command_details,
    command_close,
};

/// The window's menu bar.
[[nodiscard]] HMENU make_menu_bar();

/// The keys for the window's commands.
[[nodiscard]] HACCEL make_keys();

}  // namespace ov::shellhost
