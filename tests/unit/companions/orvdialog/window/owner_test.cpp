// Whose window a dialog is, and that there is one of them a thread.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "companions/orvdialog/control_ids.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {
namespace {

class OwnedDialog : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library.loaded()); }

    /// A window of the calling thread, as a host has one.
    static HWND make_host_window() {
        const HWND host = CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100,
                                          900, 700, nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(host);
        SetActiveWindow(host);
        return host;
    }

    const dialog_library library;
    ProtectDialogRequest request{.size_bytes = sizeof(ProtectDialogRequest),
                                 .reserved = 0,
                                 .folder_path = L"C:\\windows",
                                 .word_16 = 0,
                                 .flags = 0,
                                 .object_path = {}};
};

TEST_F(OwnedDialog, of_a_thread_with_a_window_belongs_to_it) {
    HWND host = nullptr;
    shown_dialog shown([&] {
        host = make_host_window();
        const std::uint32_t answer = library.protect(&request);
        EXPECT_TRUE(IsWindowEnabled(host));
        DestroyWindow(host);
        return answer;
    });
    const HWND window = shown.window(L"Orvane Vaultkeep - Protection");
    EXPECT_EQ(GetWindow(window, GW_OWNER), host);
    EXPECT_FALSE(IsWindowEnabled(host));
    EXPECT_TRUE(shown_dialog::eventually([window] { return GetForegroundWindow() == window; }));
    RECT dialog{};
    RECT around{};
    GetWindowRect(window, &dialog);
    GetWindowRect(host, &around);
    EXPECT_NEAR(dialog.left + dialog.right, around.left + around.right, 2) << "in the middle of its owner";
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown.result(), 0U);
}

TEST_F(OwnedDialog, of_a_thread_without_a_window_stands_by_itself) {
    shown_dialog shown([&] { return library.protect(&request); });
    const HWND window = shown.window(L"Orvane Vaultkeep - Protection");
    EXPECT_EQ(GetWindow(window, GW_OWNER), nullptr);
    EXPECT_TRUE(shown_dialog::eventually([window] { return GetForegroundWindow() == window; }));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown.result(), 0U);
}

/// A hook that asks for another dialog while the first one's messages are handled.
thread_local std::uint32_t second_answer = 99;
const dialog_library* shared_library = nullptr;

LRESULT CALLBACK ask_again(int code, WPARAM wparam, LPARAM lparam) {
    const auto& message = *reinterpret_cast<const MSG*>(lparam);
    if (code >= 0 && message.message == WM_APP && second_answer == 99) {
        ProtectDialogRequest another{};
        another.size_bytes = sizeof another;
        another.folder_path = L"C:\\windows";
        second_answer = 98;
        second_answer = shared_library->protect(&another);
    }
    return CallNextHookEx(nullptr, code, wparam, lparam);
}

TEST_F(OwnedDialog, second_one_of_a_thread_is_not_shown) {
    shared_library = &library;
    std::uint32_t second = 99;
    shown_dialog shown([&] {
        const HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, ask_again, nullptr, GetCurrentThreadId());
        const std::uint32_t answer = library.protect(&request);
        UnhookWindowsHookEx(hook);
        second = second_answer;
        return answer;
    });
    const HWND window = shown.window(L"Orvane Vaultkeep - Protection");
    PostMessageW(window, WM_APP, 0, 0);
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown.result(), 0U);
    EXPECT_EQ(second, 0U);
}

TEST_F(OwnedDialog, ones_of_two_threads_are_both_shown) {
    ProtectDialogRequest other = request;
    shown_dialog first([&] { return library.protect(&request); });
    const HWND one = first.window(L"Orvane Vaultkeep - Protection");
    shown_dialog second([&] { return library.protect(&other); });
    shown_dialog::press(second.window(L"Orvane Vaultkeep - Protection"), IDOK);
    EXPECT_NE(second.result(), 0U);
    shown_dialog::press(one, IDCANCEL);
    EXPECT_EQ(first.result(), 0U);
}

}  // namespace
}  // namespace ov::dialog
