#pragma once

#include <windows.h>

#include "ovufc/noncopyable.h"

namespace ov::dialog {

/// A modal dialog made from a template of this library. For the thread that shows it.
class modal_dialog : private noncopyable, private nonmoveable {
  public:
    virtual ~modal_dialog() = default;

    /// Shows the dialog without an owner and returns the value that it was ended with; -1 when it could not
    /// be shown or what it does has thrown.
    [[nodiscard]] INT_PTR show(WORD template_id) noexcept;

  protected:
    modal_dialog() = default;

    /// The controls are there and nothing is visible yet. Returns true to have the focus go to the first
    /// control, false when it has set the focus itself.
    virtual bool on_open() = 0;
    /// A button was pressed or a control has something to tell (its BN_, EN_ code).
    virtual void on_command(WORD control_id, WORD code) = 0;
    /// A common control has something to tell; the value goes back to it.
    virtual LRESULT on_notify(NMHDR& /*notification*/) { return 0; }

    [[nodiscard]] HWND window() const noexcept { return window_; }
    [[nodiscard]] HWND control(int id) const noexcept { return GetDlgItem(window_, id); }
    void end(INT_PTR value) noexcept { EndDialog(window_, value); }

  private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
    bool handle(UINT message, WPARAM wparam, LPARAM lparam);

    HWND window_ = nullptr;
};

/// The instance of this library, for its resources.
[[nodiscard]] HINSTANCE library_instance() noexcept;

/// Shows a message under the product's name. `owner` may be null.
void show_message(HWND owner, const wchar_t* text, UINT icon) noexcept;

}  // namespace ov::dialog
