#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "testkit/files/temp_folder.h"
#include "testkit/process/shipped_module.h"
#include "testkit/process/watchdog.h"
#include "tests/ui/known_service.h"
#include "tests/ui/window/piped_process.h"

namespace ov::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr DWORD run_limit_ms = 20000;
constexpr DWORD poll_ms = 50;

struct outcome {
    DWORD exit_code = ~0U;
    std::vector<std::string> lines;
};

outcome run(const std::wstring& arguments) {
    outcome result;
    piped_process process(arguments);
    std::string line;
    while (process.read_line(line)) {
        result.lines.push_back(line);
    }
    EXPECT_TRUE(process.wait(run_limit_ms, result.exit_code));
    return result;
}

class CommandLine : public testing::Test {
  protected:
    static void SetUpTestSuite() { ASSERT_EQ(shipped_module().register_server(), S_OK); }
    static void TearDownTestSuite() { EXPECT_EQ(shipped_module().unregister_server(), S_OK); }

    [[nodiscard]] std::wstring projects() const { return L"\"" + service_.projects() + L"\""; }

    watchdog dog_{60'000};
    known_service service_;
};

TEST_F(CommandLine, menu_is_printed_as_a_tree) {
    const outcome result = run(L"menu " + projects());
    EXPECT_EQ(result.exit_code, 0U);
    EXPECT_THAT(result.lines,
                Contains(StartsWith("This system lacks these; supplied through the import table")));
    EXPECT_THAT(result.lines, Contains("  handler Orvane Vaultkeep: returned 0x00000005"));
    EXPECT_THAT(result.lines, Contains(testing::MatchesRegex("  Orvane +submenu, bitmap")));
    EXPECT_THAT(result.lines, Contains(testing::MatchesRegex(
                                  "      .2. Export deleted files +enabled, help \"Export deleted files\"")));
}

TEST_F(CommandLine, extended_menu_is_empty) {
    EXPECT_THAT(run(L"menu --extended " + projects()).lines, Contains("  (no items)"));
}

TEST_F(CommandLine, tracked_file_has_its_own_item_and_it_is_said_that_the_mark_is_answered) {
    const temp_folder folder;
    const std::wstring file = L"\"" + folder.make_file(L"report.docx", "text") + L"\"";
    EXPECT_THAT(run(L"menu " + file).lines, Contains("  (no items)"));
    const outcome result = run(L"menu --tracked " + file);
    EXPECT_EQ(result.exit_code, 0U);
    EXPECT_THAT(result.lines, Contains(StartsWith("No file system here keeps the mark of a tracked file")));
    EXPECT_THAT(result.lines, Contains("  handler Orvane Vaultkeep: returned 0x00000001"));
    EXPECT_THAT(run(L"menu --tracked " + projects()).lines,
                Contains("  handler Orvane Vaultkeep: returned 0x00000005"));
}

TEST_F(CommandLine, invoke_runs_the_command_named_by_its_text) {
    const outcome result = run(L"menu " + projects() + L" --invoke \"export DELETED files\"");
    EXPECT_EQ(result.exit_code, 0U);
    EXPECT_EQ(result.lines.back(), "[2] Export deleted files: returned 0x00000000");
}

TEST_F(CommandLine, unknown_command_ends_with_its_own_code) {
    EXPECT_EQ(run(L"menu " + projects() + L" --invoke nonsense").exit_code, 3U);
}

TEST_F(CommandLine, missing_file_is_a_failure) {
    EXPECT_EQ(run(L"menu C:\\no\\such\\file").exit_code, 1U);
}

TEST_F(CommandLine, wrong_words_are_a_usage_error) {
    for (const wchar_t* words :
         {L"menu", L"menu x --nonsense", L"verbs", L"verbs --restore --addons", L"nonsense", L"list more",
          L"--close-after never", L"dialog", L"dialog 5 x", L"dialog 47 x", L"dialog 17 x --list y",
          L"dialog 47 x --list y --protected"}) {
        EXPECT_EQ(run(words).exit_code, 2U) << testing::PrintToString(words);
    }
}

TEST_F(CommandLine, list_prints_the_items_below_their_headings_in_order) {
    const outcome result = run(L"list");
    EXPECT_EQ(result.exit_code, 0U);
    std::vector<std::string> headings;
    for (std::size_t i = 1; i < result.lines.size(); ++i) {
        if (result.lines[i - 1].empty()) {
            headings.push_back(result.lines[i]);
        }
    }
    EXPECT_THAT(headings, ElementsAre("Protected folders", "Cloud folders", "Restore", "Addons"));
    EXPECT_THAT(result.lines, Contains("Columns: Name | Type"));
    EXPECT_THAT(result.lines, Contains(HasSubstr("orvshellext.dll,-105 with the elevation overlay")));
    EXPECT_THAT(result.lines, Contains("      attributes    0xF0800008"));
}

TEST_F(CommandLine, declined_consent_sends_nothing) {
    const outcome result = run(L"verbs --restore --no-consent");
    EXPECT_EQ(result.exit_code, 0U);
    EXPECT_THAT(result.lines,
                Contains("This system has no administrator prompt: it is declined in its place."));
    const auto calls = service_.calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), call_restore_points), 0);
}

HWND wait_for_dialog() {
    for (DWORD waited_ms = 0; waited_ms < run_limit_ms; waited_ms += poll_ms) {
        if (const HWND found = FindWindowW(L"#32770", nullptr); IsWindowVisible(found)) {
            return found;
        }
        Sleep(poll_ms);
    }
    return nullptr;
}

TEST_F(CommandLine, dialog_is_shown_and_its_answer_printed) {
    const temp_folder folder;
    const std::wstring list =
        folder.make_file(L"list.json", R"([{"cloneFileName":"C:\\clone","fileName":"a","type":"b"}])");
    for (const auto& [words, answer] :
         {std::pair(L"dialog 17 " + projects(), "not confirmed"),
          std::pair(L"dialog 47 \"" + folder.path() + L"\\a\" --list \"" + list + L"\"", "nothing chosen")}) {
        piped_process process(words);
        PostMessageW(wait_for_dialog(), WM_COMMAND, IDCANCEL, 0);
        std::string line;
        EXPECT_TRUE(process.read_line(line));
        EXPECT_EQ(line, answer);
        DWORD exit_code = ~0U;
        EXPECT_TRUE(process.wait(run_limit_ms, exit_code));
        EXPECT_EQ(exit_code, 0U);
    }
}

TEST_F(CommandLine, dialog_library_that_is_missing_is_a_failure) {
    EXPECT_EQ(run(L"dialog 17 C:\\x --library C:\\no\\such.dll").exit_code, 1U);
}

TEST_F(CommandLine, module_by_path_needs_no_registration) {
    ASSERT_EQ(shipped_module().unregister_server(), S_OK);
    const std::wstring module = L" --module \"" + program_directory() + L"orvshellext.dll\"";
    EXPECT_THAT(run(L"menu " + projects() + module).lines,
                Contains(StartsWith("  handler Orvane Vaultkeep (not registered): returned 0x00000005")));
    EXPECT_THAT(run(L"list" + module).lines, Contains(StartsWith("  Projects ")));
    EXPECT_EQ(run(L"list").exit_code, 1U);
    EXPECT_EQ(shipped_module().register_server(), S_OK);
}

}  // namespace
}  // namespace ov::test
