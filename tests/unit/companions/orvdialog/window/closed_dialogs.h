#pragma once

#include <windows.h>

#include <cstdint>

#include "ovufc/noncopyable.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {

/// Closes each dialog of this thread as soon as it is there, from within, for the length of a scope: another
/// thread for each would cost something itself. One at a time.
class closing_hook : private noncopyable {
  public:
    closing_hook() : hook_(SetWindowsHookExW(WH_CBT, close, nullptr, GetCurrentThreadId())) { closed = 0; }
    ~closing_hook() { UnhookWindowsHookEx(hook_); }

    static inline int closed = 0;

  private:
    static LRESULT CALLBACK close(int code, WPARAM window, LPARAM more) {
        if (code == HCBT_ACTIVATE && GetDlgItem(reinterpret_cast<HWND>(window), IDCANCEL) != nullptr) {
            PostMessageW(reinterpret_cast<HWND>(window), WM_COMMAND, IDCANCEL, 0);
            ++closed;
        }
        return CallNextHookEx(nullptr, code, window, more);
    }

    const HHOOK hook_;
};

inline std::uint32_t open_protection(const dialog_library& library) {
    ProtectDialogRequest request{};
    request.size_bytes = sizeof request;
    request.folder_path = L"C:\\windows";
    request.flags = protect_flag_show_unprotect;
    return library.protect(&request);
}

inline std::uint32_t open_versions(const dialog_library& library) {
    static ChronelDialogResult result;
    result = {};
    ChronelDialogRequest request{};
    request.size_bytes = sizeof request;
    request.menu_icon = LoadIconW(nullptr, IDI_APPLICATION);
    request.file_path = L"C:\\Album\\sea.txt";
    request.chronel_list = R"([{"fileName":"a","cloneFileName":"1","type":"b","time":133500000000000000}])";
    return library.chronels(&request, &result);
}

}  // namespace ov::dialog
