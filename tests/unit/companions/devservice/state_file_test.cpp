#include "companions/devservice/state_file.h"

#include "companions/devservice/file_io.h"
#include "companions/devservice/state_json.h"
#include "tests/support/child_process.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

constexpr const wchar_t* folder_variable = L"ORV_TEST_STATE_FOLDER";

service_state full_state() {
    service_state state;
    state.generation = 7;
    state.flags = 9;
    state.next_copy = 5;
    state.folders.push_back({L"C:\\Ünï\\文档", L"D:\\other", 11});
    state.rules = {L"Documents"};
    state.managed = {L"\\\\server\\share\\m"};
    state.cloud[4] = {L"C:\\cloud"};
    stored_copy copy;
    copy.number = 4;
    copy.kind = copy_kind::restore_point;
    copy.taken_on = 132'000'000'000'000'000;
    folder_copy folder;
    folder.folder = L"C:\\Ünï\\文档";
    file_record inner;
    inner.relative = L"sub";
    inner.folder = true;
    inner.attributes = FILE_ATTRIBUTE_DIRECTORY;
    file_record file;
    file.relative = L"sub\\a.txt";
    file.digest = std::string(64, 'a');
    file.size_bytes = 5'000'000'000;
    file.written = 131;
    folder.records = {inner, file};
    copy.folders = {folder};
    state.copies = {copy};
    return state;
}

class StateFile : public vault_fixture {
  protected:
    std::wstring folder = joined(root, L"saved");
    state_file file{folder};
    service_state state;
};

TEST_F(StateFile, absent_gives_a_fresh_state_whose_generation_clients_have_not_seen) {
    ASSERT_EQ(file.load(state), 0u);
    EXPECT_NE(state.generation, 0u);
    EXPECT_TRUE(state.folders.empty());
}

TEST_F(StateFile, saved_state_is_loaded_the_same) {
    service_state saved = full_state();
    ASSERT_EQ(file.save(saved), 0u);
    ASSERT_EQ(file.load(state), 0u);
    EXPECT_EQ(state_to_text(state), state_to_text(saved));
    EXPECT_EQ(state.copies[0].folders[0].records[1].size_bytes, 5'000'000'000u);
    EXPECT_TRUE(state.copies[0].folders[0].records[0].folder);
    EXPECT_EQ(state.folders[0].path, L"C:\\Ünï\\文档");
    EXPECT_EQ(state.revision, 1u);
}

TEST_F(StateFile, save_interrupted_while_writing_leaves_the_state_before_it) {
    service_state saved = full_state();
    ASSERT_EQ(file.save(saved), 0u);
    write(file.path() + L".new", state_to_text(saved).substr(0, 100));
    ASSERT_EQ(file.load(state), 0u);
    EXPECT_EQ(state.revision, 1u);
    ASSERT_EQ(file.save(state), 0u);
    ASSERT_EQ(file.load(state), 0u);
    EXPECT_EQ(state.revision, 2u);
}

TEST_F(StateFile, file_that_is_not_ours_is_refused_and_left_alone) {
    const std::string whole = state_to_text(full_state());
    std::string deep(5000, '[');
    std::string escaping = whole;
    escaping.replace(escaping.find("sub\\\\a.txt"), 10, "..\\\\..\\\\x.y");
    for (const std::string& text : {std::string(), std::string("{}"), whole.substr(0, whole.size() / 2), deep,
                                    std::string("{\"version\":1}"), escaping}) {
        write(file.path(), text);
        EXPECT_EQ(file.load(state), DWORD{ERROR_FILE_CORRUPT});
        EXPECT_EQ(read(file.path()), text);
    }
}

// Not a test by itself: the process that the next test starts and ends in the middle of its work.
TEST(ChildProcess, DISABLED_saving_without_end) {
    wchar_t shared[MAX_PATH] = {};
    ASSERT_NE(GetEnvironmentVariableW(folder_variable, shared, MAX_PATH), 0u);
    const state_file target(shared);
    service_state saved = full_state();
    saved.copies[0].folders[0].records.resize(2'000, saved.copies[0].folders[0].records[1]);
    for (;;) {
        ASSERT_EQ(target.save(saved), 0u);
    }
}

/// Starts it, waits until it has saved `path` at least once, and ends it a little later.
void run_saving_and_end_it(const std::wstring& path, DWORD later_ms) {
    constexpr DWORD patience_ms = 10'000;
    constexpr DWORD poll_ms = 5;
    test::child_process child(test::this_program(),
                              {L"--gtest_also_run_disabled_tests", L"--gtest_filter=*saving_without_end"});
    const ULONGLONG start_ms = GetTickCount64();
    while (attributes_of(path) == INVALID_FILE_ATTRIBUTES && GetTickCount64() - start_ms < patience_ms) {
        Sleep(poll_ms);
    }
    EXPECT_EQ(child.wait(later_ms), std::nullopt) << "it ended by itself";
    child.kill();
}

TEST_F(StateFile, process_ended_while_saving_leaves_a_whole_state) {
    ASSERT_TRUE(SetEnvironmentVariableW(folder_variable, folder.c_str()));
    for (DWORD round = 0; round < 6; ++round) {
        static_cast<void>(remove_file(file.path()));
        run_saving_and_end_it(file.path(), 29 * round);
        ASSERT_EQ(file.load(state), 0u) << "round " << round;
        ASSERT_GT(state.revision, 0u) << "round " << round;
        EXPECT_EQ(state.copies.at(0).folders.at(0).records.size(), 2'000u);
    }
}

}  // namespace
}  // namespace ov::devservice
