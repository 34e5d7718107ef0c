// Both dialogs by the keyboard alone: real key presses, which go where the system sends them.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "companions/orvdialog/control_ids.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {
namespace {

class DialogKeyboard : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library.loaded()); }

    void open_protection() {
        shown = std::make_unique<shown_dialog>([this] { return library.protect(&protect); });
        window = shown->window(L"Orvane Vaultkeep - Protection");
        wait_for_front();
    }
    void open_versions() {
        shown = std::make_unique<shown_dialog>([this] { return library.chronels(&versions, result.get()); });
        window = shown->window(L"Orvane Vaultkeep - Earlier");
        wait_for_front();
    }
    void wait_for_front() const {
        ASSERT_TRUE(shown_dialog::eventually([this] { return GetForegroundWindow() == window; }));
        ASSERT_TRUE(shown_dialog::eventually([this] { return focus() != 0; }));
    }
    /// The id of the control that has the keyboard.
    [[nodiscard]] int focus() const {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(shown->thread_id(), &info);
        return info.hwndFocus == nullptr ? 0 : GetDlgCtrlID(info.hwndFocus);
    }
    [[nodiscard]] bool focus_comes_to(int id) const {
        return shown_dialog::eventually([&] { return focus() == id; });
    }
    void expect_order(const std::vector<int>& ids, WORD held = 0) const {
        for (const int id : ids) {
            press_key(VK_TAB, held);
            EXPECT_TRUE(focus_comes_to(id)) << "expected " << id << ", it is at " << focus();
        }
    }
    [[nodiscard]] bool list_has_selected(int row) const {
        return SendDlgItemMessageW(window, IDC_CHRONELS_LIST, LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                   LVNI_SELECTED) == row;
    }

    const dialog_library library;
    ProtectDialogRequest protect{.size_bytes = sizeof(ProtectDialogRequest),
                                 .reserved = 0,
                                 .folder_path = L"C:\\windows",
                                 .word_16 = 0,
                                 .flags = 0,
                                 .object_path = {}};
    ChronelDialogRequest versions{
        .size_bytes = sizeof(ChronelDialogRequest),
        .reserved = 0,
        .menu_icon = nullptr,
        .file_path = L"C:\\Album\\sea.txt",
        .chronel_list = R"([{"fileName":"new","cloneFileName":"2","type":"b","time":9,"size":1},)"
                        R"({"fileName":"old","cloneFileName":"1","type":"b","time":5,"size":2}])"};
    const std::unique_ptr<ChronelDialogResult> result = std::make_unique<ChronelDialogResult>();
    std::unique_ptr<shown_dialog> shown;
    HWND window = nullptr;
};

TEST_F(DialogKeyboard, tab_goes_through_protection_in_its_order) {
    open_protection();
    EXPECT_TRUE(focus_comes_to(IDOK));
    expect_order({IDCANCEL, IDC_PROTECT_FOLDER, IDC_PROTECT_THIS, IDC_PROTECT_BROWSE, IDOK});
    expect_order({IDC_PROTECT_BROWSE, IDC_PROTECT_THIS}, VK_SHIFT);
    press_key(VK_DOWN);
    EXPECT_TRUE(focus_comes_to(IDC_PROTECT_OTHER));
    expect_order({IDC_PROTECT_OBJECT, IDC_PROTECT_BROWSE, IDCANCEL});  // no path yet: the button is grey
    press_key(VK_ESCAPE);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(DialogKeyboard, marked_keys_choose_in_protection) {
    open_protection();
    press_key('A', VK_MENU);
    EXPECT_TRUE(shown_dialog::eventually(
        [this] { return IsDlgButtonChecked(window, IDC_PROTECT_OTHER) == BST_CHECKED; }));
    press_key('H', VK_MENU);
    EXPECT_TRUE(focus_comes_to(IDC_PROTECT_OBJECT)) << "the label's key leads to its field";
    press_key('T', VK_MENU);
    EXPECT_TRUE(shown_dialog::eventually(
        [this] { return IsDlgButtonChecked(window, IDC_PROTECT_THIS) == BST_CHECKED; }));
    press_key('P', VK_MENU);
    EXPECT_NE(shown->result(), 0U);
}

TEST_F(DialogKeyboard, enter_protects) {
    open_protection();
    press_key(VK_RETURN);
    EXPECT_NE(shown->result(), 0U);
}

TEST_F(DialogKeyboard, tab_goes_through_versions_in_their_order) {
    open_versions();
    EXPECT_TRUE(focus_comes_to(IDC_CHRONELS_LIST));
    expect_order({IDC_CHRONELS_OPEN, IDC_CHRONELS_RESTORE, IDCANCEL, IDC_CHRONELS_FILE, IDC_CHRONELS_LIST});
    press_key(VK_ESCAPE);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(DialogKeyboard, enter_in_the_list_opens_the_selected_version) {
    open_versions();
    press_key(VK_DOWN);
    EXPECT_TRUE(shown_dialog::eventually([this] { return list_has_selected(1); }));
    press_key(VK_RETURN);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(result->action, chronel_action_open);
    EXPECT_STREQ(result->file_name, L"old");
}

TEST_F(DialogKeyboard, marked_key_restores) {
    open_versions();
    press_key('R', VK_MENU);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(result->action, chronel_action_restore);
    EXPECT_STREQ(result->file_name, L"new");
}

TEST_F(DialogKeyboard, keys_without_a_meaning_here_do_nothing) {
    open_versions();
    for (const WORD key : {WORD{VK_DELETE}, WORD{VK_F5}, WORD{'N'}, WORD{VK_F2}}) {
        press_key(key);
    }
    press_key(VK_DOWN);
    EXPECT_TRUE(shown_dialog::eventually([this] { return list_has_selected(1); }));
    EXPECT_EQ(SendDlgItemMessageW(window, IDC_CHRONELS_LIST, LVM_GETITEMCOUNT, 0, 0), 2);
    press_key(VK_ESCAPE);
    EXPECT_EQ(shown->result(), 0U);
}

/// The menu that a thread shows now; null for none.
HWND open_menu() {
    return FindWindowW(L"#32768", nullptr);
}

TEST_F(DialogKeyboard, menu_key_offers_to_restore) {
    open_versions();
    press_key(VK_APPS);
    ASSERT_TRUE(shown_dialog::eventually([] { return open_menu() != nullptr; }));
    press_key('R');
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(result->action, chronel_action_restore);
}

TEST_F(DialogKeyboard, menu_key_offers_to_sort) {
    open_versions();
    press_key(VK_APPS);
    ASSERT_TRUE(shown_dialog::eventually([] { return open_menu() != nullptr; }));
    press_key('S');      // "Sort by", which opens on its first column
    press_key(VK_DOWN);  // the second, by size: the larger one first
    press_key(VK_RETURN);
    EXPECT_TRUE(shown_dialog::eventually([this] { return list_has_selected(1); }));
    press_key(VK_ESCAPE);
    EXPECT_EQ(shown->result(), 0U);
}

}  // namespace
}  // namespace ov::dialog
