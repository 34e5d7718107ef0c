#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <string>

#include "ovufc/com/task_memory.h"
#include "ovufc/noncopyable.h"
#include "tools/shellhost/window/browser_site.h"
#include "tools/shellhost/window/window_menu.h"

namespace ov::shellhost {

/// The small Explorer's window: the system's own explorer browser (navigation pane and view) below a menu
/// bar.
///
/// Its title begins with the name of the folder that is shown. One apartment's object; the window's messages
/// must be pumped by the thread that made it. Destroying the window ends the thread's message loop.
class browser_window : noncopyable, nonmoveable {
  public:
    browser_window();
    ~browser_window();

    /// Goes to a place; E_INVALIDARG without one.
    [[nodiscard]] HRESULT browse(PCIDLIST_ABSOLUTE place);
    /// True for a message that was a key of the window or its view; it needs no further handling.
    [[nodiscard]] bool translate(MSG& message) const;
    /// Shows the items in the mode of one of the view commands.
    void set_mode(int command);

    [[nodiscard]] HWND handle() const noexcept { return window_; }
    /// The view that is shown; null while there is none.
    [[nodiscard]] Microsoft::WRL::ComPtr<IFolderView2> view() const;
    /// No navigation is under way.
    [[nodiscard]] bool is_at_rest() const noexcept { return !is_navigating_; }
    [[nodiscard]] std::wstring title() const;

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT answer(UINT message, WPARAM wparam, LPARAM lparam);
    void create_browser();
    void run(int command);
    void go(UINT where);
    void arrived(PCIDLIST_ABSOLUTE place);
    void complete_view();
    void close();
    [[nodiscard]] RECT client_area() const;

    HWND window_ = nullptr;
    HACCEL keys_ = nullptr;
    Microsoft::WRL::ComPtr<IExplorerBrowser> browser_;
    Microsoft::WRL::ComPtr<browser_site> site_;
    DWORD events_cookie_ = 0;
    bool is_navigating_ = false;
    com::unique_absolute_id_list place_;
};

}  // namespace ov::shellhost
