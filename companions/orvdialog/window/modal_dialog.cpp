#include "companions/orvdialog/window/modal_dialog.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "companions/orvdialog/layout/display.h"
#include "companions/orvdialog/window/library_instance.h"
#include "companions/orvdialog/window/visual_styles.h"

namespace ov::dialog {

namespace {

/// A window with this property is a dialog of this library.
constexpr const wchar_t* dialog_property = L"Orvane Vaultkeep dialog";

/// The start of a DIALOGEX template.
/// https://learn.microsoft.com/windows/win32/dlgbox/dlgtemplateex
#pragma pack(push, 1)
struct template_start {
    WORD version;
    WORD signature;
    DWORD help_id;
    DWORD extended_style;
    DWORD style;
};
#pragma pack(pop)

/// A copy of the template, for the controls are mirrored only if the dialog is made so. DWORDs, as it must be
/// aligned.
std::vector<DWORD> read_template(WORD id, bool right_to_left) {
    const HINSTANCE library = library_instance();
    const HRSRC found = FindResourceW(library, MAKEINTRESOURCEW(id), RT_DIALOG);
    const DWORD size_bytes = found == nullptr ? 0 : SizeofResource(library, found);
    if (size_bytes < sizeof(template_start)) {
        return {};
    }
    std::vector<DWORD> copy((size_bytes + sizeof(DWORD) - 1) / sizeof(DWORD));
    std::memcpy(copy.data(), LockResource(LoadResource(library, found)), size_bytes);
    if (right_to_left) {
        reinterpret_cast<template_start*>(copy.data())->extended_style |= WS_EX_LAYOUTRTL | WS_EX_RTLREADING;
    }
    return copy;
}

BOOL CALLBACK look_for_dialog(HWND window, LPARAM found) noexcept {
    if (GetPropW(window, dialog_property) == nullptr) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

SIZE size_of(const RECT& area) noexcept {
    return {area.right - area.left, area.bottom - area.top};
}

SIZE client_size(HWND window) noexcept {
    RECT client{};
    GetClientRect(window, &client);
    return size_of(client);
}

RECT work_area(HWND near_window) noexcept {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(near_window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

/// Where something of this size stands in the middle of `around` and, as far as it can, within `limits`.
POINT centred(SIZE size, const RECT& around, const RECT& limits) noexcept {
    const auto place = [](LONG length, LONG from, LONG to, LONG least, LONG most) {
        return std::max(least, std::min(from + (to - from - length) / 2, most - length));
    };
    return {place(size.cx, around.left, around.right, limits.left, limits.right),
            place(size.cy, around.top, around.bottom, limits.top, limits.bottom)};
}

}  // namespace

HWND dialog_of_this_thread() noexcept {
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), look_for_dialog, reinterpret_cast<LPARAM>(&found));
    return found;
}

HWND owner_window() noexcept {
    const HWND active = GetActiveWindow();
    return active != nullptr && IsWindowVisible(active) != FALSE ? active : nullptr;
}

INT_PTR modal_dialog::show(WORD template_id, HWND owner) noexcept {
    try {
        const visual_styles styles;
        const std::vector<DWORD> made_from = read_template(template_id, texts_.is_right_to_left());
        if (made_from.empty()) {
            return -1;
        }
        return DialogBoxIndirectParamW(library_instance(),
                                       reinterpret_cast<const DLGTEMPLATE*>(made_from.data()), owner,
                                       procedure, reinterpret_cast<LPARAM>(this));
    } catch (...) {
        return -1;
    }
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
    if (message == WM_INITDIALOG) {
        open();
        return false;  // on_open has set the focus
    }
    if (message == WM_DESTROY) {
        RemovePropW(window_, dialog_property);
    }
    // A dialog that could not be measured hears of its own end.
    return metrics_.has_value() && handle_measured(message, wparam, lparam);
}

bool modal_dialog::handle_measured(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_COMMAND:
            on_command(LOWORD(wparam), HIWORD(wparam));
            return true;
        case WM_NOTIFY:
            SetWindowLongPtrW(window_, DWLP_MSGRESULT, on_notify(*reinterpret_cast<NMHDR*>(lparam)));
            return true;
        case WM_SIZE:
            lay_out_again();
            return true;
        case WM_GETMINMAXINFO: {
            const SIZE least = size_around(least_size(), window_, metrics_->dpi());
            reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {least.cx, least.cy};
            return true;
        }
        case WM_DPICHANGED: {
            const auto& suggested = *reinterpret_cast<const RECT*>(lparam);
            measure_again(LOWORD(wparam), {suggested.left, suggested.top});
            return true;
        }
        case WM_SETTINGCHANGE:
        case WM_THEMECHANGED: {
            RECT frame{};
            GetWindowRect(window_, &frame);
            measure_again(metrics_->dpi(), {frame.left, frame.top});
            return true;
        }
        case WM_SYSCOLORCHANGE:
            // Common controls hear of it from their parent alone.
            for (const control_text& shown : controls_) {
                SendMessageW(control(shown.control_id), message, wparam, lparam);
            }
            break;
        default:
            break;
    }
    const auto answer = on_message(message, wparam, lparam);
    if (answer) {
        SetWindowLongPtrW(window_, DWLP_MSGRESULT, *answer);
    }
    return answer.has_value();
}

void modal_dialog::open() {
    SetPropW(window_, dialog_property, window_);
    leave_scaling_to(window_);
    SetWindowTextW(window_, texts_.text(title_).c_str());
    for (const control_text& shown : controls_) {
        if (shown.number != 0) {
            SetWindowTextW(control(shown.control_id), texts_.text(shown.number).c_str());
        }
    }
    take_metrics(dpi_of(window_));
    on_open();
    const SIZE size = size_around(first_size(), window_, metrics_->dpi());
    SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    move_to_owner();
    lay_out_again();
    SetForegroundWindow(window_);
}

void modal_dialog::take_metrics(UINT dpi) {
    std::optional<dialog_metrics> former(std::move(metrics_));  // its font is in use up to the next one
    metrics_.emplace(dpi);
    for (HWND child = GetWindow(window_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(metrics_->font()), TRUE);
    }
    on_metrics();
}

/// A dialog that can be resized keeps the share of the screen that the user gave it.
void modal_dialog::measure_again(UINT dpi, POINT at) {
    const SIZE shown = client_size(window_);
    const UINT former_dpi = metrics_->dpi();
    take_metrics(dpi);
    SIZE client = least_size();
    if (is_resizable()) {
        const auto scaled = [&](LONG length) {
            return MulDiv(length, static_cast<int>(dpi), static_cast<int>(former_dpi));
        };
        client = {std::max<LONG>(client.cx, scaled(shown.cx)), std::max<LONG>(client.cy, scaled(shown.cy))};
    }
    const SIZE size = size_around(client, window_, dpi);
    SetWindowPos(window_, nullptr, at.x, at.y, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
    lay_out_again();
    InvalidateRect(window_, nullptr, TRUE);
}

void modal_dialog::move_to_owner() noexcept {
    RECT frame{};
    GetWindowRect(window_, &frame);
    const HWND owner = GetWindow(window_, GW_OWNER);
    const RECT limits = work_area(owner != nullptr ? owner : window_);
    RECT around = limits;
    if (owner != nullptr && IsIconic(owner) == FALSE) {
        GetWindowRect(owner, &around);
    }
    const POINT at = centred(size_of(frame), around, limits);
    SetWindowPos(window_, nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void modal_dialog::lay_out_again() const {
    placing controls(window_);
    lay_out(controls, client_size(window_));
}

bool modal_dialog::is_resizable() const noexcept {
    return (GetWindowLongPtrW(window_, GWL_STYLE) & WS_THICKFRAME) != 0;
}

void modal_dialog::show_path(int control_id, const std::wstring& path) noexcept {
    const HWND field = control(control_id);
    read_left_to_right(control_id);
    SendMessageW(field, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
    SetWindowTextW(field, path.c_str());
}

void modal_dialog::read_left_to_right(int control_id) noexcept {
    if (texts_.is_right_to_left()) {
        const LONG_PTR style = GetWindowLongPtrW(control(control_id), GWL_EXSTYLE);
        const LONG_PTR from_right = WS_EX_RTLREADING | WS_EX_LAYOUTRTL;
        SetWindowLongPtrW(control(control_id), GWL_EXSTYLE, (style & ~from_right) | WS_EX_RIGHT);
    }
}

void modal_dialog::focus(int control_id) noexcept {
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(control_id)), TRUE);
}

}  // namespace ov::dialog
