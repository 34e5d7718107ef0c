#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "companions/orvdialog/control_ids.h"
#include "testkit/files/temp_folder.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {
namespace {

constexpr const wchar_t* title = L"Orvane Vaultkeep - Protection";
constexpr const wchar_t* folder = L"C:\\windows\\system32";

class ProtectDialog : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library.loaded()); }

    [[nodiscard]] HWND open() {
        shown = std::make_unique<shown_dialog>([this] { return library.protect(&request); });
        return shown->window(title);
    }
    /// Chooses the other path, as the hand would that types one.
    static void type_path(HWND window, const std::wstring& path) {
        SendDlgItemMessageW(window, IDC_PROTECT_OTHER, BM_CLICK, 0, 0);
        SetDlgItemTextW(window, IDC_PROTECT_OBJECT, path.c_str());
    }

    const dialog_library library;
    ProtectDialogRequest request{.size_bytes = sizeof(ProtectDialogRequest),
                                 .reserved = 0,
                                 .folder_path = folder,
                                 .word_16 = 0,
                                 .flags = 0,
                                 .object_path = {}};
    std::unique_ptr<shown_dialog> shown;
};

class ProtectDialogOfAProtectedFolder : public ProtectDialog {
  protected:
    void SetUp() override {
        request.flags = protect_flag_show_unprotect;
        ProtectDialog::SetUp();
    }
};

class ProtectDialogOfAFolderGone : public ProtectDialog {
  protected:
    void SetUp() override {
        request.folder_path = gone.c_str();
        ProtectDialog::SetUp();
    }

    const test::temp_folder parent;
    const std::wstring gone = parent.path() + L"\\gone";
};

TEST_F(ProtectDialog, opened_shows_the_folder) {
    const HWND window = open();
    EXPECT_EQ(text_of(GetDlgItem(window, IDC_PROTECT_FOLDER)), folder);
    EXPECT_EQ(IsDlgButtonChecked(window, IDC_PROTECT_THIS), static_cast<UINT>(BST_CHECKED));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDC_PROTECT_OBJECT)));
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(window, IDC_PROTECT_NOTE)));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ProtectDialog, ok_confirms_without_an_object_path) {
    shown_dialog::press(open(), IDOK);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

TEST_F(ProtectDialog, enter_is_ok) {
    const HWND window = open();
    const LRESULT answer = SendMessageW(window, DM_GETDEFID, 0, 0);
    EXPECT_EQ(HIWORD(answer), DC_HASDEFID);
    EXPECT_EQ(LOWORD(answer), IDOK);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ProtectDialog, other_path_comes_back) {
    const HWND window = open();
    type_path(window, L" \"C:\\windows\" ");
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_STREQ(request.object_path, L"C:\\windows");
}

TEST_F(ProtectDialog, other_path_given_up_again_is_the_folder) {
    const HWND window = open();
    type_path(window, L"C:\\windows");
    shown_dialog::press(window, IDC_PROTECT_THIS);
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

TEST_F(ProtectDialog, same_folder_in_other_letters_is_no_other_path) {
    const HWND window = open();
    type_path(window, L"c:\\WINDOWS\\System32\\");
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

struct bad_path {
    const wchar_t* path;
    const wchar_t* words;
};

TEST_F(ProtectDialog, path_that_cannot_be_protected_is_said_before_ok) {
    const HWND window = open();
    const std::wstring too_long = L"C:\\" + std::wstring(300, L'x');
    for (const auto& [path, words] :
         {bad_path{L"C:\\no such folder", L"nothing at this path"},
          bad_path{too_long.c_str(), L"259 characters"}, bad_path{L"C:\\", L"root of a drive"},
          bad_path{L"\\\\server\\share", L"on the network"}, bad_path{L"", L"Enter a full path"}}) {
        type_path(window, path);
        EXPECT_TRUE(shown_dialog::eventually([&] {
            return text_of(GetDlgItem(window, IDC_PROTECT_PROBLEM)).find(words) != std::wstring::npos;
        })) << testing::PrintToString(std::wstring(words));
        EXPECT_TRUE(
            shown_dialog::eventually([&] { return IsWindowEnabled(GetDlgItem(window, IDOK)) == FALSE; }));
    }
    type_path(window, L"C:\\windows");
    EXPECT_TRUE(shown_dialog::eventually([&] { return IsWindowEnabled(GetDlgItem(window, IDOK)) != FALSE; }));
    EXPECT_TRUE(
        shown_dialog::eventually([&] { return text_of(GetDlgItem(window, IDC_PROTECT_PROBLEM)).empty(); }));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

// Between typing and pressing lies no time for the check that typing starts.
TEST_F(ProtectDialog, bad_path_at_once_confirmed_keeps_the_dialog) {
    const HWND window = open();
    type_path(window, L"C:\\windows");
    EXPECT_TRUE(shown_dialog::eventually([&] { return IsWindowEnabled(GetDlgItem(window, IDOK)) != FALSE; }));
    type_path(window, L"C:\\no such folder");
    SendMessageW(window, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(IsWindow(window));
    EXPECT_NE(text_of(GetDlgItem(window, IDC_PROTECT_PROBLEM)), L"");
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
    EXPECT_STREQ(request.object_path, L"");
}

TEST_F(ProtectDialog, browse_opens_the_systems_chooser) {
    const HWND window = open();
    shown_dialog::press(window, IDC_PROTECT_BROWSE);
    const HWND chooser = shown->window(L"Orvane Vaultkeep - Choose", window);
    PostMessageW(chooser, WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(shown_dialog::eventually([&] { return IsWindowEnabled(window) != FALSE; }));
    EXPECT_EQ(IsDlgButtonChecked(window, IDC_PROTECT_THIS), static_cast<UINT>(BST_CHECKED));
    EXPECT_EQ(text_of(GetDlgItem(window, IDC_PROTECT_PROBLEM)), L"");
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown->result(), 0U);
}

TEST_F(ProtectDialogOfAProtectedFolder, note_says_so_and_how_to_end_it) {
    const HWND window = open();
    EXPECT_TRUE(shown_dialog::eventually(
        [&] { return IsWindowVisible(GetDlgItem(window, IDC_PROTECT_NOTE)) != FALSE; }));
    EXPECT_THAT(text_of(GetDlgItem(window, IDC_PROTECT_NOTE)),
                testing::AllOf(testing::HasSubstr(L"already protected"),
                               testing::HasSubstr(L"\"Unprotect folder\"")));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ProtectDialogOfAFolderGone, problem_is_said_at_once_and_until_it_is_there) {
    const HWND window = open();
    EXPECT_THAT(text_of(GetDlgItem(window, IDC_PROTECT_PROBLEM)),
                testing::HasSubstr(L"nothing at this path"));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDOK)));
    CreateDirectoryW(gone.c_str(), nullptr);
    PostMessageW(window, WM_ACTIVATE, WA_ACTIVE, 0);  // as when the user comes back from Explorer
    EXPECT_TRUE(shown_dialog::eventually([&] { return IsWindowEnabled(GetDlgItem(window, IDOK)) != FALSE; }));
    RemoveDirectoryW(gone.c_str());
    SendMessageW(window, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(IsWindow(window)) << "gone meanwhile";
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

}  // namespace
}  // namespace ov::dialog
