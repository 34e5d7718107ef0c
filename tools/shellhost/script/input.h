#pragma once

#include <windows.h>

#include <string>

namespace ov::shellhost {

enum class mouse_button { left, right };

/// Moves the pointer to a point of the screen and clicks there that many times, as a user would. The clicks
/// are only queued when this returns.
void click_at(POINT where, mouse_button button, int times);

/// Presses and lets go of a key named "enter", "escape", "down", "up", "left", "right", "home", "menu" or one
/// letter. False for any other name.
[[nodiscard]] bool press_key(const std::wstring& name);

}  // namespace ov::shellhost
