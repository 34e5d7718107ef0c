#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "companions/orvdialog/chronels/chronel_list.h"
#include "companions/orvdialog/control_ids.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

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
    static int selected_row(HWND window) {
        return static_cast<int>(
            SendMessageW(list_of(window), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    }
    /// Clicks the heading of a column.
    static void click_heading(HWND window, int column) {
        const HWND header = reinterpret_cast<HWND>(SendMessageW(list_of(window), LVM_GETHEADER, 0, 0));
        RECT area{};
        SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&area));
        const LPARAM at = MAKELPARAM((area.left + area.right) / 2, (area.top + area.bottom) / 2);
        SendMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, at);
        SendMessageW(header, WM_LBUTTONUP, 0, at);
    }
    /// HDF_SORTUP, HDF_SORTDOWN or neither.
    static int arrow_of(HWND window, int column) {
        const HWND header = reinterpret_cast<HWND>(SendMessageW(list_of(window), LVM_GETHEADER, 0, 0));
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    }
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

TEST_F(ChronelDialog, opened_lists_the_versions_newest_first) {
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

TEST_F(ChronelDialog, open_gives_the_selected_record) {
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

TEST_F(ChronelDialog, restore_gives_the_row_that_was_chosen) {
    const HWND window = open(two_versions);
    select(window, 1);
    shown_dialog::press(window, IDC_CHRONELS_RESTORE);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(result->action, chronel_action_restore);
    EXPECT_THAT(result->chronel_identifier, testing::HasSubstr(R"("cloneFileName":"1")"));
}

TEST_F(ChronelDialog, enter_opens_and_never_restores) {
    const HWND window = open(two_versions);
    const LRESULT answer = SendMessageW(window, DM_GETDEFID, 0, 0);
    EXPECT_EQ(LOWORD(answer), IDC_CHRONELS_OPEN);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ChronelDialog, no_selection_greys_the_buttons) {
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

TEST_F(ChronelDialog, icon_that_is_none_shows_none) {
    request.menu_icon = reinterpret_cast<HICON>(std::uintptr_t{0xDEADBEEF});
    const HWND window = open(two_versions);
    shown_dialog::press(window, IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
}

TEST_F(ChronelDialog, icon_is_left_to_its_owner) {
    request.menu_icon = CopyIcon(LoadIconW(nullptr, IDI_APPLICATION));
    shown_dialog::press(open(two_versions), IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
    EXPECT_TRUE(DestroyIcon(request.menu_icon)) << "the dialog has destroyed it";
}

class ChronelDialogUnusable : public ChronelDialog, public testing::WithParamInterface<std::string> {};

TEST_P(ChronelDialogUnusable, record_is_refused_and_the_dialog_stays) {
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

TEST_F(ChronelDialog, longest_identifier_that_fits_is_given) {
    const std::string rest = R"({"cloneFileName":"","fileName":"a","type":"b"})";
    const std::string clone(16383 - rest.size(), 'x');
    shown_dialog::press(open(R"([{"cloneFileName":")" + clone + R"(","fileName":"a","type":"b"}])"),
                        IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(std::char_traits<char>::length(result->chronel_identifier), 16383U);
}

TEST_F(ChronelDialog, heading_sorts_and_shows_it) {
    const HWND window = open(two_versions);
    EXPECT_EQ(arrow_of(window, 0), HDF_SORTDOWN);
    click_heading(window, 0);
    EXPECT_EQ(arrow_of(window, 0), HDF_SORTUP);
    EXPECT_EQ(cell(window, 0, 3), L"old sea.txt");
    click_heading(window, 1);
    EXPECT_EQ(arrow_of(window, 0), 0);
    EXPECT_EQ(arrow_of(window, 1), HDF_SORTDOWN);
    EXPECT_EQ(cell(window, 0, 3), L"sea.txt");
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ChronelDialog, selected_version_stays_selected_when_sorted) {
    const HWND window = open(two_versions);
    click_heading(window, 0);
    EXPECT_EQ(selected_row(window), 1);
    shown_dialog::press(window, IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
    EXPECT_STREQ(result->file_name, L"sea.txt");
}

TEST_F(ChronelDialog, double_click_opens_the_version_below_it) {
    const HWND window = open(two_versions);
    RECT area{LVIR_LABEL, 0, 0, 0};
    SendMessageW(list_of(window), LVM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&area));
    const LPARAM at = MAKELPARAM(area.left + 5, (area.top + area.bottom) / 2);
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}) {
        PostMessageW(list_of(window), message, MK_LBUTTON, at);
    }
    EXPECT_NE(shown->result(), 0U);
    EXPECT_EQ(result->action, chronel_action_open);
    EXPECT_STREQ(result->file_name, L"old sea.txt");
}

SIZE size_of(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return {area.right - area.left, area.bottom - area.top};
}

TEST_F(ChronelDialog, made_small_keeps_all_that_it_has) {
    const HWND window = open(two_versions);
    SetWindowPos(window, nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    RECT client{};
    GetClientRect(window, &client);
    for (const int id :
         {IDC_CHRONELS_FILE, IDC_CHRONELS_LIST, IDC_CHRONELS_OPEN, IDC_CHRONELS_RESTORE, IDCANCEL}) {
        RECT area{};
        GetWindowRect(GetDlgItem(window, id), &area);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&area), 2);
        EXPECT_TRUE(area.left >= 0 && area.right <= client.right && area.bottom <= client.bottom) << id;
        EXPECT_GT(area.bottom - area.top, 5) << id;
    }
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

TEST_F(ChronelDialog, size_and_columns_are_remembered_by_the_process) {
    const HWND window = open(two_versions);
    SetWindowPos(window, nullptr, 0, 0, 700, 500, SWP_NOMOVE | SWP_NOZORDER);
    SendMessageW(list_of(window), LVM_SETCOLUMNWIDTH, 2, 222);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);

    const HWND again = open(two_versions);
    EXPECT_EQ(size_of(again).cx, 700);
    EXPECT_EQ(size_of(again).cy, 500);
    EXPECT_EQ(SendMessageW(list_of(again), LVM_GETCOLUMNWIDTH, 2, 0), 222);
    shown_dialog::press(again, IDCANCEL);
    EXPECT_EQ(shown->result(), 0U);
}

std::string many_versions(int count) {
    std::string list = "[";
    for (int i = 0; i < count; ++i) {
        list +=
            R"({"cloneFileName":")" + std::to_string(i) + R"(","createdOn":)" +
            std::to_string(133'500'000'000'000'000 + i) +
            R"(,"fileName":"sea.txt","size":2048,"type":"restore point","writtenOn":133500000000000000},)";
    }
    list.back() = ']';
    return list;
}

/// What a thread has used of a processor until now; unlike the time on the wall it does not grow with the
/// load.
ULONGLONG processor_ms(DWORD thread_id) {
    const win::unique_kernel_handle thread(OpenThread(THREAD_QUERY_INFORMATION, FALSE, thread_id));
    FILETIME made{};
    FILETIME ended{};
    FILETIME in_system{};
    FILETIME in_program{};
    EXPECT_TRUE(GetThreadTimes(thread.get(), &made, &ended, &in_system, &in_program));
    const auto ticks = [](const FILETIME& time) {
        return (static_cast<ULONGLONG>(time.dwHighDateTime) << 32U) | time.dwLowDateTime;
    };
    constexpr ULONGLONG ticks_a_ms = 10'000;
    return (ticks(in_system) + ticks(in_program)) / ticks_a_ms;
}

// The aim is a tenth of a second more than a list of two takes; the limit is for the processor's time, on a
// machine that builds meanwhile.
TEST_F(ChronelDialog, hundred_thousand_versions_are_shown_without_a_wait) {
    constexpr ULONGLONG limit_ms = 250;
    const auto shown_after_ms = [this](const std::string& list) {
        const ULONGLONG start_ms = GetTickCount64();
        const HWND window = open(list);
        const ULONGLONG taken_ms = GetTickCount64() - start_ms;
        const ULONGLONG used_ms = processor_ms(shown->thread_id());
        std::printf("%zu bytes: shown after %llu ms, %llu of them the processor's\n", list.size(), taken_ms,
                    used_ms);
        shown_dialog::press(window, IDCANCEL);
        EXPECT_EQ(shown->result(), 0U);
        return used_ms;
    };
    shown_after_ms(two_versions);  // what the system loads for itself, once
    shown_after_ms(two_versions);
    EXPECT_LT(shown_after_ms(many_versions(100'000)), limit_ms);
}

TEST_F(ChronelDialog, hundred_thousand_versions_are_scrolled_through_and_sorted) {
    const HWND window = open(many_versions(100'000));
    EXPECT_EQ(SendMessageW(list_of(window), LVM_GETITEMCOUNT, 0, 0), 100'000);
    for (const int row : {99'999, 50'000, 0, 12'345}) {
        SendMessageW(list_of(window), LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
        const auto top = static_cast<int>(SendMessageW(list_of(window), LVM_GETTOPINDEX, 0, 0));
        const auto page = static_cast<int>(SendMessageW(list_of(window), LVM_GETCOUNTPERPAGE, 0, 0));
        EXPECT_TRUE(top <= row && row <= top + page) << row << " is not within " << top << " + " << page;
        UpdateWindow(list_of(window));
        EXPECT_EQ(cell(window, row, 2), L"Restore point");
    }
    for (const int column : {2, 3, 0, 1}) {
        click_heading(window, column);
        EXPECT_NE(arrow_of(window, column), 0);
    }
    select(window, 99'999);
    shown_dialog::press(window, IDC_CHRONELS_OPEN);
    EXPECT_NE(shown->result(), 0U);
}

TEST_F(ChronelDialog, list_of_twenty_mebibytes_is_shown) {
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
