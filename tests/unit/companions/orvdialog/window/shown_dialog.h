#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

#include "ovufc/dialog/dialog_records.h"
#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::dialog {

/// The built orvdialog.dll, loaded as the module does; its exports by ordinal.
class dialog_library {
  public:
    dialog_library();
    [[nodiscard]] bool loaded() const { return static_cast<bool>(library_); }
    [[nodiscard]] FARPROC export_at(WORD ordinal) const;
    [[nodiscard]] std::uint32_t protect(ProtectDialogRequest* request) const;
    [[nodiscard]] std::uint32_t chronels(ChronelDialogRequest* request, ChronelDialogResult* result) const;

  private:
    win::unique_library library_;
};

/// A call that shows windows, running on a thread of its own, and the hand that presses their buttons.
/// Every wait ends: a window or answer that does not come fails the test.
class shown_dialog : private noncopyable {
  public:
    explicit shown_dialog(std::function<std::uint32_t()> call);
    /// A call that still runs is ended by closing its windows.
    ~shown_dialog();

    /// The thread's visible window whose title begins with `title`, other than `besides`; null if none comes.
    [[nodiscard]] HWND window(const std::wstring& title, HWND besides = nullptr);
    /// Whether something comes to be true: a window's thread may not be there yet.
    [[nodiscard]] static bool eventually(const std::function<bool()>& condition);
    /// Clicks a button of a window.
    static void press(HWND window, int id);
    [[nodiscard]] DWORD thread_id() const { return thread_id_; }
    /// What the call returned.
    [[nodiscard]] std::uint32_t result();

  private:
    static DWORD WINAPI run(void* self);

    const std::function<std::uint32_t()> call_;
    std::uint32_t result_ = 0;
    DWORD thread_id_ = 0;
    win::unique_kernel_handle thread_;
};

/// Presses and lets go of a key, as a hand would, with "shift" or "alt" held down or without.
void press_key(WORD key, WORD held = 0);

/// The text of a control or window, of another thread too.
[[nodiscard]] std::wstring text_of(HWND window);

/// All texts of a window's controls, one a line.
[[nodiscard]] std::wstring texts_in(HWND window);

}  // namespace ov::dialog
