#include "module/registration/registration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "module/state/module_state.h"
#include "testkit/registry/registry_watch.h"
#include "tests/unit/module/expected_calls.h"
#include "tests/unit/module/shell_double.h"

namespace ov::registration {
namespace {

using test::registry_watch;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using calls = std::vector<std::string>;

calls operator+(calls left, const calls& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

bool starts(const std::string& line, const char* word) {
    return line.rfind(word, 0) == 0;
}

/// The tables run against a registry that only seems to be there.
class RegistrationCalls : public testing::Test {
  protected:
    void SetUp() override {
        shell.module_path = test::expected_module_path;
        module_state::module_instance = reinterpret_cast<HINSTANCE>(std::uintptr_t{0x12340000});
    }

    /// Makes every call fail that begins with `word`.
    void fail_calls(const std::string& word, LSTATUS status) {
        watch.answer = [word, status](std::size_t, const std::string& line) -> std::optional<LSTATUS> {
            return line.rfind(word, 0) == 0 ? std::optional(status) : std::nullopt;
        };
    }

    registry_watch watch{GetModuleHandleW(nullptr), registry_watch::mode::simulate};
    test::shell_double shell{GetModuleHandleW(nullptr), watch};
};

TEST_F(RegistrationCalls, register_writes_every_entry_in_order_and_tells_the_shell) {
    EXPECT_EQ(register_server(), S_OK);
    EXPECT_THAT(watch.calls(), ElementsAreArray(test::expected_registration() + test::expected_notice()));
    EXPECT_EQ(watch.open_keys(), 0U);
}

TEST_F(RegistrationCalls, register_asks_for_the_path_of_the_module_itself) {
    EXPECT_EQ(register_server(), S_OK);
    EXPECT_EQ(shell.asked_module, module_state::module_instance);
    EXPECT_EQ(shell.asked_size_chars, 260U);
}

TEST_F(RegistrationCalls, register_without_a_module_path_only_removes) {
    shell.module_path.clear();
    EXPECT_EQ(register_server(), E_UNEXPECTED);
    EXPECT_THAT(watch.calls(), ElementsAreArray(test::expected_removal() + test::expected_notice()));
}

TEST_F(RegistrationCalls, register_cuts_a_path_that_is_too_long_at_its_limit) {
    shell.module_path = std::wstring(300, L'x');
    EXPECT_EQ(register_server(), S_OK);
    const std::string cut(259, 'x');
    EXPECT_EQ(watch.calls()[4], "set #2 (default) REG_SZ 520 \"" + cut + "\\0\"");
}

TEST_F(RegistrationCalls, register_without_a_desktop_list_tells_nobody) {
    shell.desktop_result = E_FAIL;
    EXPECT_EQ(register_server(), S_OK);
    EXPECT_THAT(watch.calls(),
                ElementsAreArray(test::expected_registration() + calls{test::expected_notice().front()}));
}

TEST_F(RegistrationCalls, create_is_tried_once_more_with_the_backup_option_when_access_is_denied) {
    watch.answer = [](std::size_t, const std::string& line) -> std::optional<LSTATUS> {
        const bool normal = starts(line, "create") && line.find(" options 0 ") != std::string::npos;
        return normal ? std::optional<LSTATUS>(ERROR_ACCESS_DENIED) : std::nullopt;
    };
    EXPECT_EQ(register_server(), S_OK);

    calls expected;
    for (const std::string& line : test::expected_registration()) {
        if (starts(line, "create")) {
            std::string denied = line.substr(0, line.find(" ->"));
            std::string again = line;
            expected.push_back(denied + " = 5");
            again.replace(again.find(" options 0 "), 11, " options 4 ");
            expected.push_back(again);
        } else {
            expected.push_back(line);
        }
    }
    EXPECT_THAT(watch.calls(), ElementsAreArray(expected + test::expected_notice()));
}

TEST_F(RegistrationCalls, a_failure_at_any_call_takes_everything_back) {
    const calls all = test::expected_registration();
    for (std::size_t failing = 0; failing < all.size(); ++failing) {
        if (starts(all[failing], "close")) {
            continue;
        }
        SCOPED_TRACE(all[failing]);
        watch.clear();
        watch.answer = [failing](std::size_t number, const std::string&) -> std::optional<LSTATUS> {
            return number == failing ? std::optional<LSTATUS>(ERROR_DISK_FULL) : std::nullopt;
        };
        ASSERT_EQ(register_server(), E_UNEXPECTED);
        ASSERT_EQ(watch.open_keys(), 0U);

        // What came before, the failing call, at most one key to close, then the whole removal.
        const calls& made = watch.calls();
        EXPECT_THAT(made[failing], EndsWith(" = 112"));
        const std::size_t closes = made[failing + 1].rfind("close", 0) == 0 ? 1 : 0;
        EXPECT_EQ(closes, starts(all[failing], "set") ? 1U : 0U);
        ASSERT_EQ(made.size(),
                  failing + 1 + closes + test::expected_removal().size() + test::expected_notice().size());
        EXPECT_EQ(made[failing + 1 + closes], test::expected_removal().front());
        EXPECT_EQ(made.back(), test::expected_notice().back());
    }
}

TEST_F(RegistrationCalls, a_second_denial_is_a_failure) {
    fail_calls("create HKLM", ERROR_ACCESS_DENIED);
    EXPECT_EQ(register_server(), E_UNEXPECTED);
    const auto tried = std::ranges::count_if(
        watch.calls(), [](const std::string& line) { return starts(line, "create HKLM"); });
    EXPECT_EQ(tried, 2);
}

TEST_F(RegistrationCalls, unregister_removes_in_order_and_tells_the_shell) {
    EXPECT_EQ(unregister_server(), S_OK);
    EXPECT_THAT(watch.calls(), ElementsAreArray(test::expected_removal() + test::expected_notice()));
    EXPECT_EQ(watch.open_keys(), 0U);
}

TEST_F(RegistrationCalls, unregister_where_nothing_is_there_succeeds) {
    watch.answer = [](std::size_t, const std::string&) { return ERROR_FILE_NOT_FOUND; };
    EXPECT_EQ(unregister_server(), S_OK);
    calls expected;
    for (const std::string& line : test::expected_removal()) {
        // A probe that finds no key is all that is left of a row with a probe.
        if (starts(line, "open") && line.find("access 20019") != std::string::npos) {
            expected.push_back(line.substr(0, line.find(" ->")) + " = 2");
        } else if (starts(line, "delete-tree") || starts(line, "delete-key HKCR")) {
            expected.push_back(line + " = 2");
        }
    }
    EXPECT_EQ(expected.size(), 22U);
    EXPECT_THAT(watch.calls(), ElementsAreArray(expected + test::expected_notice()));
}

TEST_F(RegistrationCalls, unregister_leaves_a_missing_value_alone) {
    fail_calls("query", ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(unregister_server(), S_OK);
    for (const std::string& line : watch.calls()) {
        EXPECT_FALSE(starts(line, "delete-value")) << line;
    }
    EXPECT_EQ(watch.open_keys(), 0U);
}

TEST_F(RegistrationCalls, unregister_does_not_mind_a_value_that_cannot_be_deleted) {
    fail_calls("delete-value", ERROR_ACCESS_DENIED);
    EXPECT_EQ(unregister_server(), S_OK);
    EXPECT_EQ(watch.open_keys(), 0U);
}

TEST_F(RegistrationCalls, unregister_tries_a_key_that_cannot_be_probed) {
    watch.answer = [](std::size_t, const std::string& line) -> std::optional<LSTATUS> {
        const bool probe = line.find("access 20019") != std::string::npos;
        return probe ? std::optional<LSTATUS>(ERROR_ACCESS_DENIED) : std::nullopt;
    };
    EXPECT_EQ(unregister_server(), S_OK);
    const auto has = [&](const char* word) {
        return std::ranges::count_if(watch.calls(),
                                     [&](const std::string& line) { return starts(line, word); });
    };
    EXPECT_EQ(has("delete-key HKLM"), 2);
    EXPECT_EQ(has("delete-value"), 2);
}

TEST_F(RegistrationCalls, unregister_ends_at_the_first_key_that_cannot_be_deleted) {
    fail_calls("delete-key HKCR \"Directory", ERROR_ACCESS_DENIED);
    EXPECT_EQ(unregister_server(), E_UNEXPECTED);
    ASSERT_EQ(watch.calls().size(), 3U);
    EXPECT_THAT(watch.calls()[2], HasSubstr("Directory"));
}

TEST_F(RegistrationCalls, unregister_ends_at_a_value_whose_key_cannot_be_opened) {
    watch.answer = [](std::size_t, const std::string& line) -> std::optional<LSTATUS> {
        const bool for_writing = line.find("access 2001F") != std::string::npos;
        return for_writing ? std::optional<LSTATUS>(ERROR_ACCESS_DENIED) : std::nullopt;
    };
    EXPECT_EQ(unregister_server(), E_UNEXPECTED);
    EXPECT_THAT(watch.calls().back(), EndsWith("access 2001F = 5"));
}

TEST_F(RegistrationCalls, unregister_goes_on_after_a_tree_that_cannot_be_deleted) {
    fail_calls("delete-tree", ERROR_ACCESS_DENIED);
    EXPECT_EQ(unregister_server(), S_OK);
    EXPECT_EQ(watch.calls().back(), test::expected_notice().back());
}

TEST_F(RegistrationCalls, unregister_without_a_desktop_list_tells_nobody) {
    shell.desktop_result = E_FAIL;
    EXPECT_EQ(unregister_server(), S_OK);
    EXPECT_EQ(watch.calls().back(), test::expected_notice().front());
}

}  // namespace
}  // namespace ov::registration
