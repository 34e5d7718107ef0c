#include "shell/file_menu/dialog_bridge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "testkit/checks/fake_dialog_library.h"
#include "testkit/process/shipped_module.h"
#include "testkit/process/module_attach.h"

namespace ov::shell {
namespace {

using dialog::ChronelDialogRequest;
using dialog::ChronelDialogResult;
using dialog::ProtectDialogRequest;
using test::fake_dialog_library;
using testing::ElementsAre;
using outcome = chronel_dialog::outcome;

const std::wstring folder = L"C:\\a folder";
const std::wstring file = L"C:\\a folder\\file.txt";

class DialogBridge : public testing::Test {
  protected:
    fake_dialog_library library_{GetModuleHandleW(nullptr)};
};

TEST_F(DialogBridge, library_is_the_one_beside_the_module) {
    (void)show_protect_dialog(folder, true);
    ASSERT_EQ(library_.loads().size(), 1U);
    EXPECT_EQ(library_.loads()[0].path, test::program_directory() + L"orvdialog.dll");
    EXPECT_EQ(library_.loads()[0].flags, 0x1100U);
    (void)chronel_dialog();
    EXPECT_EQ(library_.loads()[1].path, library_.loads()[0].path);
    EXPECT_EQ(library_.loads()[1].flags, 0x1100U);
}

TEST_F(DialogBridge, protect_dialog_loads_shows_and_frees) {
    (void)show_protect_dialog(folder, true);
    EXPECT_THAT(library_.events(), ElementsAre("load", "find 17", "show 17", "free"));
}

TEST_F(DialogBridge, protect_request_is_zero_but_for_what_it_says) {
    ProtectDialogRequest seen{};
    std::wstring seen_path;
    library_.protect = [&](const ProtectDialogRequest& request) {
        seen = request;
        seen_path = request.folder_path;
        return 0;
    };
    (void)show_protect_dialog(folder, true);
    EXPECT_EQ(seen.size_bytes, 544U);
    EXPECT_EQ(seen.reserved, 0U);
    EXPECT_EQ(seen_path, folder);
    EXPECT_EQ(seen.word_16, 0U);
    EXPECT_EQ(seen.flags, 0x80000000U);
    EXPECT_TRUE(std::all_of(std::begin(seen.object_path), std::end(seen.object_path),
                            [](wchar_t character) { return character == 0; }));
    (void)show_protect_dialog(folder, false);
    EXPECT_EQ(seen.flags, 0U);
}

TEST_F(DialogBridge, protect_answer_is_what_the_dialog_returns) {
    for (const std::uint32_t returned : {0U, 1U, 0x80000000U}) {
        library_.protect = [&](ProtectDialogRequest& request) {
            std::wcscpy(request.object_path, L"D:\\object");
            return returned;
        };
        const protect_answer answer = show_protect_dialog(folder, true);
        EXPECT_EQ(answer.confirmed, returned != 0);
        EXPECT_EQ(answer.object_path, returned != 0 ? L"D:\\object" : L"");
    }
}

TEST_F(DialogBridge, object_path_without_terminator_is_cut_at_its_field) {
    library_.protect = [](ProtectDialogRequest& request) {
        std::fill(std::begin(request.object_path), std::end(request.object_path), L'x');
        return 1U;
    };
    EXPECT_EQ(show_protect_dialog(folder, true).object_path, std::wstring(260, L'x'));
}

TEST_F(DialogBridge, missing_library_is_not_confirmed) {
    library_.is_missing = true;
    EXPECT_FALSE(show_protect_dialog(folder, true).confirmed);
    EXPECT_EQ(chronel_dialog().show(nullptr, file, "[]"), outcome::not_shown);
    EXPECT_THAT(library_.events(), ElementsAre("load", "load"));
}

TEST_F(DialogBridge, missing_export_is_not_confirmed_and_the_library_freed) {
    library_.has_no_exports = true;
    EXPECT_FALSE(show_protect_dialog(folder, true).confirmed);
    EXPECT_EQ(chronel_dialog().show(nullptr, file, "[]"), outcome::not_shown);
    EXPECT_THAT(library_.events(), ElementsAre("load", "find 17", "free", "load", "find 47", "free"));
}

TEST_F(DialogBridge, chronel_request_says_what_is_shown) {
    const auto icon = reinterpret_cast<HICON>(0x1234);
    library_.chronels = [&](const ChronelDialogRequest& request, const ChronelDialogResult& result) {
        EXPECT_EQ(request.size_bytes, 32U);
        EXPECT_EQ(request.reserved, 0U);
        EXPECT_EQ(request.menu_icon, icon);
        EXPECT_EQ(request.file_path, file);
        EXPECT_STREQ(request.chronel_list, "{\"chronels\":[]}");
        const ChronelDialogResult zero{};
        EXPECT_EQ(std::memcmp(&result, &zero, sizeof zero), 0);
        return 0;
    };
    EXPECT_EQ(chronel_dialog().show(icon, file, "{\"chronels\":[]}"), outcome::no_answer);
}

TEST_F(DialogBridge, chronel_answer_is_read_while_the_library_is_there) {
    library_.chronels = [](const ChronelDialogRequest&, ChronelDialogResult& result) {
        result.size_bytes = 20492;
        result.action = 1;
        std::strcpy(result.chronel_identifier, "{}");
        std::wcscpy(result.file_name, L"name");
        return 1;
    };
    {
        chronel_dialog dialog;
        ASSERT_EQ(dialog.show(nullptr, file, "[]"), outcome::answered);
        EXPECT_EQ(dialog.action(), 1U);
        EXPECT_EQ(dialog.chronel_identifier(), "{}");
        EXPECT_EQ(dialog.file_name(), L"name");
        library_.note("used");
    }
    EXPECT_THAT(library_.events(), ElementsAre("load", "find 47", "show 47", "used", "free"));
}

TEST_F(DialogBridge, chronel_result_of_another_size_is_no_answer) {
    for (const std::uint32_t size : {0U, 20491U, 20493U, 0xFFFFFFFFU}) {
        library_.chronels = [&](const ChronelDialogRequest&, ChronelDialogResult& result) {
            result.size_bytes = size;
            result.action = 2;
            return 1;
        };
        EXPECT_EQ(chronel_dialog().show(nullptr, file, "[]"), outcome::no_answer) << size;
    }
}

TEST_F(DialogBridge, cancelled_chronel_dialog_is_no_answer_whatever_it_wrote) {
    library_.chronels = [](const ChronelDialogRequest&, ChronelDialogResult& result) {
        result.size_bytes = 20492;
        return 0;
    };
    EXPECT_EQ(chronel_dialog().show(nullptr, file, "[]"), outcome::no_answer);
}

TEST_F(DialogBridge, chronel_texts_without_terminators_are_cut_at_their_fields) {
    library_.chronels = [](const ChronelDialogRequest&, ChronelDialogResult& result) {
        std::memset(&result, 'x', sizeof result);
        result.size_bytes = 20492;
        return 1;
    };
    chronel_dialog dialog;
    ASSERT_EQ(dialog.show(nullptr, file, "[]"), outcome::answered);
    EXPECT_EQ(dialog.chronel_identifier(), std::string(16384, 'x'));
    EXPECT_EQ(dialog.file_name().size(), 2048U);
}

}  // namespace
}  // namespace ov::shell
