#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "companions/orvdialog/control_ids.h"
#include "tests/unit/companions/orvdialog/shown_dialog.h"

namespace ov::dialog {
namespace {

constexpr const wchar_t* title = L"Orvane Vaultkeep - Protection";
constexpr const wchar_t* folder = L"C:\\windows\\system32";

class ProtectDialog : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library.loaded()); }

    [[nodiscard]] HWND open() { return shown.window(title); }

    const dialog_library library;
    ProtectDialogRequest request{.size_bytes = sizeof(ProtectDialogRequest),
                                 .reserved = 0,
                                 .folder_path = folder,
                                 .word_16 = 0,
                                 .flags = 0,
                                 .object_path = {}};
    shown_dialog shown{[this] { return library.protect(&request); }};
};

class ProtectDialogWithNote : public ProtectDialog {
  protected:
    ProtectDialogWithNote() { request.flags = protect_flag_show_unprotect; }
};

TEST_F(ProtectDialog, opened_showsTheFolder) {
    const HWND window = open();
    EXPECT_EQ(text_of(GetDlgItem(window, IDC_PROTECT_FOLDER)), folder);
    EXPECT_EQ(text_of(GetDlgItem(window, IDC_PROTECT_OBJECT)), folder);
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(window, IDC_PROTECT_NOTE)));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown.result(), 0U);
}

TEST_F(ProtectDialog, ok_confirmsWithoutAnObjectPath) {
    shown_dialog::press(open(), IDOK);
    EXPECT_NE(shown.result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

TEST_F(ProtectDialog, enter_isOk) {
    const HWND window = open();
    const LRESULT answer = SendMessageW(window, DM_GETDEFID, 0, 0);
    EXPECT_EQ(HIWORD(answer), DC_HASDEFID);
    EXPECT_EQ(LOWORD(answer), IDOK);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown.result(), 0U);
}

TEST_F(ProtectDialog, otherPath_comesBack) {
    const HWND window = open();
    SetDlgItemTextW(window, IDC_PROTECT_OBJECT, L" \"C:\\windows\" ");
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown.result(), 0U);
    EXPECT_STREQ(request.object_path, L"C:\\windows");
}

TEST_F(ProtectDialog, sameFolderInOtherLetters_isNoOtherPath) {
    const HWND window = open();
    SetDlgItemTextW(window, IDC_PROTECT_OBJECT, L"c:\\WINDOWS\\System32\\");
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown.result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

TEST_F(ProtectDialog, emptiedPath_isTheFolder) {
    const HWND window = open();
    SetDlgItemTextW(window, IDC_PROTECT_OBJECT, L"  ");
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown.result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

TEST_F(ProtectDialog, pathThatIsNotThere_isAskedForAgain) {
    const HWND window = open();
    SetDlgItemTextW(window, IDC_PROTECT_OBJECT, L"C:\\no such folder");
    shown_dialog::press(window, IDOK);
    const HWND message = shown.window(L"Orvane Vaultkeep", window);
    EXPECT_THAT(texts_in(message), testing::HasSubstr(L"nothing at this path"));
    shown_dialog::press(message, IDOK);
    SetDlgItemTextW(window, IDC_PROTECT_OBJECT, folder);
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown.result(), 0U);
}

TEST_F(ProtectDialog, pathBeyondTheRecord_isRefused) {
    const HWND window = open();
    SetDlgItemTextW(window, IDC_PROTECT_OBJECT, (L"C:\\" + std::wstring(300, L'x')).c_str());
    shown_dialog::press(window, IDOK);
    const HWND message = shown.window(L"Orvane Vaultkeep", window);
    EXPECT_THAT(texts_in(message), testing::HasSubstr(L"too long"));
    shown_dialog::press(message, IDOK);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown.result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

TEST_F(ProtectDialog, browse_opensTheSystemsChooser) {
    const HWND window = open();
    shown_dialog::press(window, IDC_PROTECT_BROWSE);
    const HWND chooser = shown.window(L"Orvane Vaultkeep - Choose", window);
    PostMessageW(chooser, WM_COMMAND, IDCANCEL, 0);
    EXPECT_EQ(text_of(GetDlgItem(window, IDC_PROTECT_OBJECT)), folder);
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown.result(), 0U);
}

TEST_F(ProtectDialogWithNote, flag_mentionsUnprotect) {
    const HWND window = open();
    EXPECT_TRUE(shown_dialog::comes_up(GetDlgItem(window, IDC_PROTECT_NOTE)));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown.result(), 0U);
}

}  // namespace
}  // namespace ov::dialog
