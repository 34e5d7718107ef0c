#include "companions/devservice/store/state_file.h"

#include <atomic>

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/store/state_json.h"
#include "testkit/process/child_process.h"
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
    inner.kind = entry_kind::folder;
    inner.attributes = FILE_ATTRIBUTE_DIRECTORY;
    file_record file;
    file.relative = L"sub\\a.txt";
    file.digest = std::string(64, 'a');
    file.size_bytes = 5'000'000'000;
    file.written = 131;
    folder.records = {inner, file, {.relative = L"link", .kind = entry_kind::link, .digest = {}}};
    folder.records.push_back({.relative = L"held.txt", .digest = {}, .size_bytes = 9});
    folder.unlisted = {L"", L"sealed"};
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
    EXPECT_TRUE(state.copies[0].folders[0].records[0].folder());
    EXPECT_EQ(state.copies[0].folders[0].records[2].kind, entry_kind::link);
    EXPECT_FALSE(state.copies[0].folders[0].records[3].kept());
    EXPECT_EQ(state.copies[0].folders[0].unlisted, (std::vector<std::wstring>{L"", L"sealed"}));
    EXPECT_EQ(state.folders[0].path, L"C:\\Ünï\\文档");
    EXPECT_EQ(state.revision, 1u);
}

TEST_F(StateFile, save_interrupted_while_writing_leaves_the_state_before_it) {
    service_state saved = full_state();
    ASSERT_EQ(file.save(saved), 0u);
    write(file.path() + L".new", state_to_text(saved).value().substr(0, 100));
    ASSERT_EQ(file.load(state), 0u);
    EXPECT_EQ(state.revision, 1u);
    ASSERT_EQ(file.save(state), 0u);
    ASSERT_EQ(file.load(state), 0u);
    EXPECT_EQ(state.revision, 2u);
}

TEST_F(StateFile, file_that_is_not_ours_is_refused_and_left_alone) {
    const std::string whole = state_to_text(full_state()).value();
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

TEST_F(StateFile, state_that_could_not_be_read_back_is_not_saved) {
    service_state saved = full_state();
    ASSERT_EQ(file.save(saved), 0u);
    const std::string before = read(file.path());
    std::vector<service_state> bad(8, full_state());
    bad[0].copies[0].folders[0].records[1].relative = L"12:30 notes.txt";
    bad[1].copies[0].folders[0].records[1].relative = L"..\\x";
    bad[2].copies[0].folders[0].records[1].relative = L"half \xD83D pair";
    bad[3].copies[0].folders[0].records[1].digest = "short";
    bad[4].folders[0].path = L"C:\\half \xD83D pair";
    bad[5].managed[0] = L"C:\\half \xD83D pair";
    bad[6].copies[0].folders[0].folder = L"C:\\half \xD83D pair";
    bad[7].copies[0].folders[0].unlisted = {L"C:\\"};
    for (service_state& one : bad) {
        EXPECT_NE(file.save(one), 0u) << &one - bad.data();
        EXPECT_EQ(read(file.path()), before);
    }
    EXPECT_FALSE(exists(file.path() + L".new"));
}

TEST_F(StateFile, state_that_is_too_large_to_be_loaded_is_not_saved) {
    service_state saved = full_state();
    ASSERT_EQ(file.save(saved), 0u);
    const std::uint64_t size_bytes = read(file.path()).size();
    const state_file smaller(folder, size_bytes);
    EXPECT_EQ(smaller.save(saved), 0u) << "the revision grows by no digit";
    saved.managed.push_back(L"D:\\x");
    EXPECT_EQ(smaller.save(saved), DWORD{ERROR_FILE_TOO_LARGE});
    ASSERT_EQ(smaller.load(state), 0u);
    EXPECT_EQ(state.revision, 2u);
}

/// Reads the file over and over, each time keeping it open for a while.
struct reader {
    std::wstring path;
    std::atomic<bool> stop = false;
    static DWORD WINAPI run(void* self) {
        auto& own = *static_cast<reader*>(self);
        while (!own.stop) {
            win::unique_file open;
            static_cast<void>(open_for_reading(own.path, open));
            Sleep(15);
            open.reset();
            Sleep(1);
        }
        return 0;
    }
};

TEST_F(StateFile, saved_while_others_read_it) {
    service_state saved = full_state();
    ASSERT_EQ(file.save(saved), 0u);
    reader others{file.path()};
    const win::unique_kernel_handle thread(CreateThread(nullptr, 0, reader::run, &others, 0, nullptr));
    for (int count = 0; count < 40; ++count) {
        EXPECT_EQ(file.save(saved), 0u) << count;
    }
    others.stop = true;
    WaitForSingleObject(thread.get(), INFINITE);
    ASSERT_EQ(file.load(state), 0u);
    EXPECT_EQ(state.revision, 41u);
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
