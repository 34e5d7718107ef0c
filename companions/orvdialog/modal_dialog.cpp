#include "companions/orvdialog/modal_dialog.h"

// The linker's name for the start of this image.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace ov::dialog {

HINSTANCE library_instance() noexcept {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

void show_message(HWND owner, const wchar_t* text, UINT icon) noexcept {
    MessageBoxW(owner, text, L"Orvane Vaultkeep", MB_OK | MB_SETFOREGROUND | MB_TOPMOST | icon);
}

INT_PTR modal_dialog::show(WORD template_id) noexcept {
    return DialogBoxParamW(library_instance(), MAKEINTRESOURCEW(template_id), nullptr, procedure,
                           reinterpret_cast<LPARAM>(this));
}

INT_PTR CALLBACK modal_dialog::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lparam);
        reinterpret_cast<modal_dialog*>(lparam)->window_ = window;
    }
    // The first messages come before WM_INITDIALOG.
    auto* const self = reinterpret_cast<modal_dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (self == nullptr) {
        return FALSE;
    }
    try {
        return self->handle(message, wparam, lparam) ? TRUE : FALSE;
    } catch (...) {
        EndDialog(window, -1);
        return TRUE;
    }
}

bool modal_dialog::handle(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_INITDIALOG:
            return on_open();
        case WM_COMMAND:
            on_command(LOWORD(wparam), HIWORD(wparam));
            return true;
        case WM_NOTIFY:
            SetWindowLongPtrW(window_, DWLP_MSGRESULT, on_notify(*reinterpret_cast<NMHDR*>(lparam)));
            return true;
        default:
            return false;
    }
}

}  // namespace ov::dialog
