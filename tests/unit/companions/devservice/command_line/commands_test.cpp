#include "companions/devservice/command_line/command_line.h"
#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/files/path.h"
#include "ovufc/ipc/drvport/wire.h"
#include "ovufc/win/handle.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class Commands : public vault_fixture {
  protected:
    /// Runs a command on the test's state folder and reads what it left.
    int run(std::vector<std::wstring> words) {
        words.insert(words.begin(), {L"--state", store.folder()});
        const int code = run_command_line(std::move(words));
        EXPECT_EQ(store.reload(), 0u);
        return code;
    }
};

TEST_F(Commands, protect_and_unprotect_a_path) {
    write(user_path(L"a.txt"), "content");
    EXPECT_EQ(run({L"protect", L"--as", L"D:\\x", user + L"\\"}), exit_done);
    ASSERT_EQ(store.state().folders.size(), 1u);
    EXPECT_EQ(store.state().folders[0].path, user);
    EXPECT_EQ(store.state().folders[0].object_path, L"D:\\x");
    EXPECT_EQ(run({L"unprotect", user}), exit_done);
    EXPECT_TRUE(store.state().folders.empty());
    EXPECT_EQ(run({L"unprotect", user}), exit_failed);
}

TEST_F(Commands, rules_are_listed_once_and_taken_back) {
    EXPECT_EQ(run({L"protect", L"--rule", L"Documents"}), exit_done);
    EXPECT_EQ(run({L"protect", L"--rule", L"documents"}), exit_failed);
    EXPECT_EQ(run({L"protect", L"--rule", L"..\\x"}), exit_usage);
    EXPECT_EQ(store.state().rules, std::vector<std::wstring>{L"Documents"});
    EXPECT_EQ(run({L"unprotect", L"--rule", L"DOCUMENTS"}), exit_done);
    EXPECT_TRUE(store.state().rules.empty());
}

TEST_F(Commands, flags_are_set_and_cleared_by_name) {
    EXPECT_EQ(run({L"flags", L"--exports", L"on", L"--addons", L"on"}), exit_done);
    EXPECT_EQ(store.state().flags, ORV_FLAG_EXPORTS_AVAILABLE | ORV_FLAG_ADDONS_SHOWN);
    EXPECT_EQ(run({L"flags", L"--exports", L"off", L"--restricted", L"on"}), exit_done);
    EXPECT_EQ(store.state().flags, ORV_FLAG_ADDONS_SHOWN | ORV_FLAG_UI_RESTRICTED);
    EXPECT_EQ(run({L"flags", L"--exports", L"maybe"}), exit_usage);
    EXPECT_EQ(run({L"flags", L"--unknown", L"on"}), exit_usage);
    EXPECT_EQ(run({L"flags"}), exit_done);
    EXPECT_EQ(store.state().flags, ORV_FLAG_ADDONS_SHOWN | ORV_FLAG_UI_RESTRICTED);
}

TEST_F(Commands, lists_are_edited) {
    EXPECT_EQ(run({L"cloud", L"add", L"--provider", L"dropBox", L"D:\\box"}), exit_done);
    EXPECT_EQ(run({L"mgmt", L"add", L"D:\\managed"}), exit_done);
    EXPECT_EQ(store.state().cloud[3], std::vector<std::wstring>{L"D:\\box"});
    EXPECT_EQ(store.state().managed, std::vector<std::wstring>{L"D:\\managed"});
    EXPECT_EQ(run({L"cloud", L"remove", L"--provider", L"dropBox", L"d:\\BOX\\"}), exit_done);
    EXPECT_TRUE(store.state().cloud[3].empty());
    EXPECT_EQ(run({L"cloud", L"add", L"--provider", L"elsewhere", L"D:\\box"}), exit_usage);
    EXPECT_EQ(run({L"mgmt", L"remove", L"D:\\other"}), exit_failed);
}

TEST_F(Commands, restore_point_names_what_was_left_out) {
    EXPECT_EQ(run({L"restore-point"}), exit_failed) << "nothing is protected";
    write(user_path(L"a.txt"), "content");
    write(user_path(L"held.txt"), "content");
    ASSERT_EQ(run({L"protect", user}), exit_done);
    EXPECT_EQ(run({L"restore-point"}), exit_done);
    const win::unique_file held(CreateFileW(user_path(L"held.txt").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                            nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_EQ(run({L"restore-point"}), exit_partial);
    EXPECT_EQ(store.state().copies.size(), 3u);
}

TEST_F(Commands, wrong_usage_is_told_apart_from_failure) {
    EXPECT_EQ(run({}), exit_usage);
    EXPECT_EQ(run({L"dance"}), exit_usage);
    EXPECT_EQ(run({L"protect"}), exit_usage);
    EXPECT_EQ(run({L"protect", L"a", L"b"}), exit_usage);
    EXPECT_EQ(run({L"cloud", L"add", L"D:\\box"}), exit_usage);
    EXPECT_EQ(run({L"protect", L"--as"}), exit_usage);
    EXPECT_EQ(run({L"protect", L"--as", L"--rule", L"x"}), exit_usage);
    EXPECT_EQ(run({L"protect", L"--dance", L"a"}), exit_usage);
    EXPECT_EQ(run({L"flags", L"--exports"}), exit_usage);
    EXPECT_EQ(run_command_line({}), exit_usage);
    EXPECT_EQ(run_command_line({L"--state"}), exit_usage);
    EXPECT_EQ(run({L"--help"}), exit_done);
    EXPECT_EQ(run({L"protect", L"--dance", L"--help"}), exit_done);
    EXPECT_EQ(run({L"list"}), exit_done);
    EXPECT_EQ(run({L"stop"}), exit_absent);
}

TEST_F(Commands, damaged_state_is_left_for_a_person) {
    write(joined(store.folder(), L"state.json"), "no state");
    EXPECT_EQ(run_command_line({L"--state", store.folder(), L"list"}), exit_failed);
    EXPECT_EQ(run_command_line({L"--state", store.folder(), L"flags", L"--exports", L"on"}), exit_failed);
    EXPECT_EQ(read(joined(store.folder(), L"state.json")), "no state");
}

}  // namespace
}  // namespace ov::devservice
