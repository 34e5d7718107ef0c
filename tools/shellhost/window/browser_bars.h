#pragma once

#include <windows.h>

#include <string>

#include "ovufc/win/handle.h"

namespace ov::shellhost {

/// Commands of the browser window's menu, toolbar and keys.
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

struct font_traits {
    using type = HFONT;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { DeleteObject(value); }
};
using unique_font = win::unique_handle<font_traits>;

/// The toolbar: buttons for the commands with the system's own pictures, and the place that is shown behind
/// them.
class tool_bar {
  public:
    void create(HWND parent);
    /// Fits it into its parent's new width.
    void resize() const;
    /// Takes the system's font at the size of the window's monitor.
    void fit_font();
    [[nodiscard]] int height() const;
    /// Shows where the browser is.
    void show_place(const std::wstring& place) const;
    /// Presses the button of the view mode that is on.
    void show_mode(int command) const;

  private:
    HWND bar_ = nullptr;
    HWND place_ = nullptr;
    unique_font font_;
};

/// The status bar: one line about what is shown.
class status_bar {
  public:
    void create(HWND parent);
    void resize() const;
    [[nodiscard]] int height() const;
    void show(const std::wstring& text) const;

  private:
    HWND bar_ = nullptr;
};

}  // namespace ov::shellhost
