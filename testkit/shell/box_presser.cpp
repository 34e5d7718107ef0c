#include "testkit/shell/box_presser.h"

#include <array>

namespace ov::test {

namespace {

constexpr DWORD poll_ms = 20;
// From the moment when a box is seen until its last style is set.
constexpr DWORD settle_ms = 100;
constexpr DWORD patience_ms = 10'000;

// The class of every dialog box, and the id of a message box's text.
constexpr const wchar_t* dialog_class = L"#32770";
constexpr int text_id = 0xFFFF;

std::wstring text_of(HWND window) {
    std::array<wchar_t, 2048> text{};
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return text.data();
}

BOOL CALLBACK take_own_dialog(HWND window, LPARAM found) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    std::array<wchar_t, 32> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (process != GetCurrentProcessId() || std::wstring(name.data()) != dialog_class ||
        IsWindowVisible(window) == FALSE) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

HWND wait_for_dialog(const HWND previous) {
    for (DWORD waited = 0; waited < patience_ms; waited += poll_ms) {
        HWND dialog = nullptr;
        EnumWindows(&take_own_dialog, reinterpret_cast<LPARAM>(&dialog));
        if (dialog != nullptr && dialog != previous) {
            return dialog;
        }
        Sleep(poll_ms);
    }
    return nullptr;
}

// The id that a dialog box would tell is that of its template; the button drawn as default is the truth.
int default_button_of(HWND dialog) {
    for (const int button : {IDOK, IDCANCEL, IDYES, IDNO}) {
        HWND window = GetDlgItem(dialog, button);
        if (window != nullptr && (GetWindowLongPtrW(window, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON) {
            return button;
        }
    }
    return 0;
}

box_presser::box read_box(HWND dialog) {
    return {text_of(GetDlgItem(dialog, text_id)), text_of(dialog), default_button_of(dialog)};
}

}  // namespace

box_presser::box_presser(std::initializer_list<int> buttons)
    : buttons_(buttons), thread_(CreateThread(nullptr, 0, &box_presser::press_all, this, 0, nullptr)) {}

box_presser::~box_presser() {
    WaitForSingleObject(thread_.get(), INFINITE);
}

const std::vector<box_presser::box>& box_presser::finish() {
    WaitForSingleObject(thread_.get(), INFINITE);
    return pressed_;
}

DWORD WINAPI box_presser::press_all(void* self) {
    auto& presser = *static_cast<box_presser*>(self);
    HWND dialog = nullptr;
    for (const int button : presser.buttons_) {
        dialog = wait_for_dialog(dialog);
        if (dialog == nullptr) {
            return 1;
        }
        Sleep(settle_ms);
        presser.pressed_.push_back(read_box(dialog));
        PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
    }
    return 0;
}

}  // namespace ov::test
