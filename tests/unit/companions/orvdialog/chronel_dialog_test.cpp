#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "companions/orvdialog/chronel_list.h"
#include "companions/orvdialog/control_ids.h"
#include "tests/unit/companions/orvdialog/shown_dialog.h"

namespace ov::dialog {
namespace {

constexpr const wchar_t* title = L"Orvane Vaultkeep - Earlier versions";

constexpr const char* two_versions =
    R"([{"fileName":"old sea.txt","cloneFileName":"1","type":"manual","time":132500000000000000,"size":10},)"
    R"({"fileName":"sea.txt","cloneFileName":"2","type":"first","time":133500000000000000,"size":2048}])";

class ChronelDialog : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library.loaded()); }

    /// Shows the dialog with this list and gives its window.
    HWND open(std::string list_text) {
        text = std::move(list_text);
        request.chronel_list = text.c_str();
        shown = std::make_unique<shown_dialog>([this] { return library.chronels(&request, result.get()); });
        return shown->window(title);
    }

    static HWND list_of(HWND window) { return GetDlgItem(window, IDC_CHRONELS_LIST); }
    static void select(HWND window, int row) {
        // Another thread's list reads the item through a pointer of this process, which it shares.
        LVITEMW item{};
        item.state = LVIS_SELECTED | LVIS_FOCUSED;
        item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageW(list_of(window), LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
    }
    static std::wstring cell(HWND window, int row, int column) {
        wchar_t buffer[260]{};
        LVITEMW item{};
        item.iSubItem = column;
        item.pszText = buffer;
        item.cchTextMax = 260;
        SendMessageW(list_of(window), LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(&item));
        return buffer;
    }

    const dialog_library library;
    std::string text;
    ChronelDialogRequest request{.size_bytes = sizeof(ChronelDialogRequest),
                                 .reserved = 0,
                                 .menu_icon = nullptr,
                                 .file_path = L"C:\\Album\\sea.txt",
                                 .chronel_list = nullptr};
    const std::unique_ptr<ChronelDialogResult> result = std::make_unique<ChronelDialogResult>();
    std::unique_ptr<shown_dialog> shown;
};

TEST_F(ChronelDialog, opened_listsTheVersionsNewestFirst) {
    const HWND window = open(two_versions);
    EXPECT_EQ(text_of(GetDlgItem(window, IDC_CHRONELS_FILE)), L"C:\\Album\\sea.txt");
    EXPECT_EQ(SendMessageW(list_of(window), LVM_GETITEMCOUNT, 0, 0), 2);
    EXPECT_EQ(cell(window, 0, 3), L"sea.txt");
    EXPECT_EQ(cell(window, 1, 3), L"old sea.txt");
    EXPECT_EQ(cell(window, 1, 2), L"manual");
    EXPECT_THAT(cell(window, 0, 0), testing::HasSubstr(L"2024"));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
    EXPECT_EQ(result->size_bytes, 0U) << "a cancelled dialog vouches for nothing";
}

TEST_F(ChronelDialog, open_givesTheSelectedRecord) {
    const HWND window = open(two_versions);
    shown_dialog::press(window, IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(result->size_bytes, sizeof(ChronelDialogResult));
    EXPECT_EQ(result->action, chronel_action_open);
    EXPECT_STREQ(result->file_name, L"sea.txt");
    EXPECT_STREQ(
        result->chronel_identifier,
        R"({"cloneFileName":"2","fileName":"sea.txt","size":2048,"time":133500000000000000,"type":"first"})");
}

TEST_F(ChronelDialog, restore_givesTheRowThatWasChosen) {
    const HWND window = open(two_versions);
    select(window, 1);
    shown_dialog::press(window, IDC_CHRONELS_RESTORE);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(result->action, chronel_action_restore);
    EXPECT_THAT(result->chronel_identifier, testing::HasSubstr(R"("cloneFileName":"1")"));
}

TEST_F(ChronelDialog, enter_opensAndNeverRestores) {
    const HWND window = open(two_versions);
    const LRESULT answer = SendMessageW(window, DM_GETDEFID, 0, 0);
    EXPECT_EQ(LOWORD(answer), IDC_CHRONELS_OPEN);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ChronelDialog, noSelection_greysTheButtons) {
    const HWND window = open(two_versions);
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED;
    SendMessageW(list_of(window), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDC_CHRONELS_OPEN)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDC_CHRONELS_RESTORE)));
    select(window, 0);
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(window, IDC_CHRONELS_OPEN)));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ChronelDialog, icon_thatIsNone_showsNone) {
    request.menu_icon = reinterpret_cast<HICON>(std::uintptr_t{0xDEADBEEF});
    const HWND window = open(two_versions);
    shown_dialog::press(window, IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
}

TEST_F(ChronelDialog, icon_isLeftToItsOwner) {
    request.menu_icon = CopyIcon(LoadIconW(nullptr, IDI_APPLICATION));
    shown_dialog::press(open(two_versions), IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
    EXPECT_TRUE(DestroyIcon(request.menu_icon)) << "the dialog has destroyed it";
}

class ChronelDialogUnusable : public ChronelDialog, public testing::WithParamInterface<std::string> {};

TEST_P(ChronelDialogUnusable, record_isRefusedAndTheDialogStays) {
    const HWND window = open(GetParam());
    shown_dialog::press(window, IDC_CHRONELS_OPEN);
    const HWND message = shown->window(L"Orvane Vaultkeep", window);
    EXPECT_THAT(texts_in(message), testing::HasSubstr(L"not usable"));
    shown_dialog::press(message, IDOK);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
    EXPECT_EQ(result->size_bytes, 0U);
}

std::string record_text(const std::string& file_name, const std::string& clone) {
    return R"([{"fileName":")" + file_name + R"(","cloneFileName":")" + clone + R"(","type":"b"}])";
}

INSTANTIATE_TEST_SUITE_P(tooLongIdentifier, ChronelDialogUnusable,
                         testing::Values(record_text("a", std::string(16384, 'x'))));
INSTANTIATE_TEST_SUITE_P(tooLongName, ChronelDialogUnusable,
                         testing::Values(record_text(std::string(2048, 'x'), "1")));
INSTANTIATE_TEST_SUITE_P(zeroInName, ChronelDialogUnusable, testing::Values(record_text("a\\u0000b", "1")));

TEST_F(ChronelDialog, longestIdentifierThatFits_isGiven) {
    const std::string rest = R"({"cloneFileName":"","fileName":"a","type":"b"})";
    const std::string clone(16383 - rest.size(), 'x');
    shown_dialog::press(open(R"([{"cloneFileName":")" + clone + R"(","fileName":"a","type":"b"}])"),
                        IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(std::char_traits<char>::length(result->chronel_identifier), 16383U);
}

TEST_F(ChronelDialog, listOfTwentyMebibytes_isShown) {
    const std::string record = R"({"fileName":"sea.txt","cloneFileName":"7","type":"manual","time":5},)";
    std::string list = "[";
    while (list.size() + record.size() < longest_list_bytes) {
        list += record;
    }
    list.back() = ']';
    const HWND window = open(list);
    EXPECT_GT(SendMessageW(list_of(window), LVM_GETITEMCOUNT, 0, 0), 100'000);
    shown_dialog::press(window, IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
}

}  // namespace
}  // namespace ov::dialog
