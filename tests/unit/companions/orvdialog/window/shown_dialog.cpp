#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

#include <gtest/gtest.h>

#include <vector>

#include "testkit/process/module_attach.h"

namespace ov::dialog {

namespace {

constexpr DWORD wait_ms = 20'000;
constexpr DWORD poll_ms = 10;

struct wanted_window {
    std::wstring title;
    HWND besides;
    HWND found;
};

BOOL CALLBACK look_at(HWND window, LPARAM wanted_address) {
    auto& wanted = *reinterpret_cast<wanted_window*>(wanted_address);
    if (window != wanted.besides && IsWindowVisible(window) != FALSE &&
        text_of(window).starts_with(wanted.title)) {
        wanted.found = window;
        return FALSE;
    }
    return TRUE;
}

BOOL CALLBACK close(HWND window, LPARAM) {
    PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
}

}  // namespace

dialog_library::dialog_library()
    : library_(LoadLibraryExW((module_state::module_directory + L"orvdialog.dll").c_str(), nullptr,
                              LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS)) {}

FARPROC dialog_library::export_at(WORD ordinal) const {
    return GetProcAddress(library_.get(), MAKEINTRESOURCEA(ordinal));
}

std::uint32_t dialog_library::protect(ProtectDialogRequest* request) const {
    return reinterpret_cast<show_protect_dialog>(reinterpret_cast<void*>(export_at(protect_ordinal)))(
        request);
}

std::uint32_t dialog_library::chronels(ChronelDialogRequest* request, ChronelDialogResult* result) const {
    return reinterpret_cast<show_chronel_dialog>(reinterpret_cast<void*>(export_at(chronel_ordinal)))(request,
                                                                                                      result);
}

shown_dialog::shown_dialog(std::function<std::uint32_t()> call) : call_(std::move(call)) {
    thread_.reset(CreateThread(nullptr, 0, run, this, 0, &thread_id_));
}

shown_dialog::~shown_dialog() {
    for (int tries = 0; tries < 100 && WaitForSingleObject(thread_.get(), 100) == WAIT_TIMEOUT; ++tries) {
        EnumThreadWindows(thread_id_, close, 0);
    }
}

HWND shown_dialog::window(const std::wstring& title, HWND besides) {
    wanted_window wanted{title, besides, nullptr};
    const ULONGLONG start_ms = GetTickCount64();
    while (wanted.found == nullptr && GetTickCount64() - start_ms < wait_ms &&
           WaitForSingleObject(thread_.get(), poll_ms) == WAIT_TIMEOUT) {
        EnumThreadWindows(thread_id_, look_at, reinterpret_cast<LPARAM>(&wanted));
    }
    EXPECT_NE(wanted.found, nullptr) << "no such window came";
    // What it answers now it answers when it has been laid out.
    SendMessageW(wanted.found, WM_NULL, 0, 0);
    return wanted.found;
}

bool shown_dialog::eventually(const std::function<bool()>& condition) {
    const ULONGLONG start_ms = GetTickCount64();
    bool is_true = condition();
    while (!is_true && GetTickCount64() - start_ms < wait_ms) {
        Sleep(poll_ms);
        is_true = condition();
    }
    return is_true;
}

void shown_dialog::press(HWND window, int id) {
    const HWND button = GetDlgItem(window, id);
    ASSERT_NE(button, nullptr) << "no button " << id;
    ASSERT_TRUE(IsWindowEnabled(button)) << "button " << id << " is grey";
    PostMessageW(button, BM_CLICK, 0, 0);
}

std::uint32_t shown_dialog::result() {
    EXPECT_EQ(WaitForSingleObject(thread_.get(), wait_ms), WAIT_OBJECT_0) << "the call has not returned";
    return result_;
}

DWORD WINAPI shown_dialog::run(void* self) {
    auto& shown = *static_cast<shown_dialog*>(self);
    shown.result_ = shown.call_();
    return 0;
}

void press_key(WORD key, WORD held) {
    std::vector<INPUT> strokes;
    const auto add = [&strokes](WORD code, DWORD flags) {
        INPUT stroke{};
        stroke.type = INPUT_KEYBOARD;
        stroke.ki.wVk = code;
        stroke.ki.dwFlags = flags;
        strokes.push_back(stroke);
    };
    if (held != 0) {
        add(held, 0);
    }
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    if (held != 0) {
        add(held, KEYEVENTF_KEYUP);
    }
    SendInput(static_cast<UINT>(strokes.size()), strokes.data(), sizeof(INPUT));
}

std::wstring text_of(HWND window) {
    std::wstring text(40'000, L'\0');
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_NORMAL,
                        5000, &length);
    text.resize(length);
    return text;
}

std::wstring texts_in(HWND window) {
    std::wstring texts;
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        texts += text_of(child) + L"\n";
    }
    return texts;
}

}  // namespace ov::dialog
