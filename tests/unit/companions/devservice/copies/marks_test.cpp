#include "companions/devservice/copies/marks.h"

#include "companions/devservice/copies/mark.h"
#include "companions/devservice/copies/take_copy.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "tests/unit/companions/devservice/copies/marking_file_system.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class Marks : public vault_fixture {
  protected:
    void SetUp() override {
        write(letter, "letter");
        write(picture, "picture");
        write(empty, "");
        protect_user_folder();
    }

    [[nodiscard]] marks::changes update() { return marks(store.folder()).update(store.state()); }

    [[nodiscard]] bool remembers_a_folder() const {
        return count_files(joined(store.folder(), L"marked")) != 0;
    }

    void expect_all_readable() const {
        EXPECT_EQ(read_as_others_do(letter), "letter");
        EXPECT_EQ(read_as_others_do(picture), "picture");
        EXPECT_EQ(read_as_others_do(empty), "");
        EXPECT_EQ(count_files(user), 3u);
    }

    static std::string read_as_others_do(const std::wstring& path) {
        return opens_for_others(path) ? read(path) : "does not open";
    }

    const std::wstring letter = user_path(L"letter.txt");
    const std::wstring picture = user_path(L"2026\\Zürich.jpg");
    const std::wstring empty = user_path(L"empty.txt");
};

TEST_F(Marks, here_no_file_system_keeps_them_and_nothing_is_touched) {
    EXPECT_EQ(mark_file(letter), DWORD{ERROR_NOT_SUPPORTED}) << "it can be marked now: show it for real";
    const auto done = update();
    EXPECT_EQ(done.set, 0u);
    EXPECT_EQ(done.taken_away, 0u);
    EXPECT_FALSE(remembers_a_folder());
    expect_all_readable();
}

TEST_F(Marks, with_a_filter_every_file_is_marked_once_and_opens_as_before) {
    marking_file_system system;
    EXPECT_EQ(update().set, 3u);
    for (const std::wstring& file : {letter, picture, empty}) {
        EXPECT_TRUE(system.is_marked(file));
    }
    EXPECT_FALSE(system.is_marked(parent_of(picture)));
    expect_all_readable();
    EXPECT_EQ(update().set, 0u);
}

TEST_F(Marks, without_a_filter_only_a_file_of_our_own_is_tried) {
    marking_file_system system;
    system.has_filter = false;
    EXPECT_EQ(update().set, 0u);
    ASSERT_EQ(system.history().size(), 1u);
    EXPECT_EQ(base_name(system.history().front()), L".orvane mark trial");
    expect_all_readable();
}

TEST_F(Marks, file_that_no_longer_opens_loses_its_mark_at_once) {
    marking_file_system system;
    system.unknown_to_filter = {letter};
    EXPECT_EQ(update().set, 2u);
    EXPECT_FALSE(system.is_marked(letter));
    expect_all_readable();
}

TEST_F(Marks, file_of_one_who_has_it_for_himself_is_left_alone) {
    marking_file_system system;
    const win::unique_file held(
        CreateFileW(letter.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_EQ(update().set, 2u);
    EXPECT_FALSE(system.is_marked(letter));
}

TEST_F(Marks, unprotected_folder_loses_them_all) {
    marking_file_system system;
    ASSERT_EQ(update().set, 3u);
    ASSERT_TRUE(remembers_a_folder());
    ASSERT_EQ(unprotect(store, user), 0u);
    EXPECT_EQ(update().taken_away, 3u);
    EXPECT_FALSE(system.is_marked(letter));
    EXPECT_FALSE(remembers_a_folder());
    expect_all_readable();
}

TEST_F(Marks, next_start_without_the_filter_takes_them_away) {
    marking_file_system system;
    ASSERT_EQ(update().set, 3u);
    system.has_filter = false;
    EXPECT_EQ(read_as_others_do(letter), "does not open");
    EXPECT_EQ(update().taken_away, 3u);
    expect_all_readable();
}

// What a process leaves that ends between setting a mark and looking what came of it.
TEST_F(Marks, mark_left_on_a_file_that_does_not_open_is_taken_away_at_the_next_start) {
    marking_file_system system;
    ASSERT_EQ(update().set, 3u);
    system.unknown_to_filter = {letter};
    EXPECT_EQ(read_as_others_do(letter), "does not open");
    EXPECT_EQ(update().taken_away, 1u);
    expect_all_readable();
}

TEST_F(Marks, one_that_cannot_be_taken_away_is_tried_again) {
    marking_file_system system;
    ASSERT_EQ(update().set, 3u);
    ASSERT_EQ(unprotect(store, user), 0u);
    system.refuses_to_unmark = true;
    EXPECT_EQ(update().failed.size(), 3u);
    EXPECT_TRUE(remembers_a_folder());
    system.refuses_to_unmark = false;
    EXPECT_EQ(update().taken_away, 3u);
    EXPECT_FALSE(remembers_a_folder());
}

TEST_F(Marks, folder_that_is_away_is_waited_for_and_keeps_nobody_else_waiting) {
    marking_file_system system;
    ASSERT_EQ(update().set, 3u);
    const std::wstring other = joined(root, L"other");
    write(joined(other, L"note.txt"), "note");
    problems left_out;
    ASSERT_EQ(protect(store, other, std::wstring(), left_out), 0u);
    ASSERT_TRUE(MoveFileW(user.c_str(), (user + L" away").c_str()));
    const auto done = update();
    ASSERT_TRUE(MoveFileW((user + L" away").c_str(), user.c_str()));
    EXPECT_EQ(done.set, 1u);
    EXPECT_TRUE(done.failed.empty());
    EXPECT_TRUE(remembers_a_folder());
}

TEST_F(Marks, marked_files_are_copied_and_rolled_back_like_any_other) {
    marking_file_system system;
    ASSERT_EQ(update().set, 3u);
    const json point = take_point();
    write(letter, "locked");
    ASSERT_EQ(remove_file(picture), 0u);
    EXPECT_EQ(status_of_reply(call(service_call::restore_from_point, point)), 0);
    expect_all_readable();
}

TEST_F(Marks, version_of_a_marked_file_is_restored) {
    marking_file_system system;
    ASSERT_EQ(update().set, 3u);
    write(letter, "new letter");
    const json versions =
        json::parse(handed_over(call(service_call::get_file_chronels,
                                     {{"fileName", user_utf8 + "\\letter.txt"}, {"tempFolder", temp_utf8}})));
    ASSERT_EQ(versions.size(), 1u);
    EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel,
                                   {{"fileName", user_utf8 + "\\letter.txt"},
                                    {"usedFileName", versions[0].at("fileName")},
                                    {"cloneFileName", versions[0].at("cloneFileName")},
                                    {"chronelType", versions[0].at("type")}})),
              0);
    EXPECT_EQ(read(letter), "letter");
}

}  // namespace
}  // namespace ov::devservice
