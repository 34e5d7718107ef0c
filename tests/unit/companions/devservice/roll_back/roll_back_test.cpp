#include "companions/devservice/roll_back/roll_back.h"

#include "companions/devservice/copies/take_copy.h"
#include "companions/devservice/files/file_io.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class RollBack : public vault_fixture {
  protected:
    void SetUp() override {
        write(user_path(L"report.txt"), "the report");
        write(user_path(L"photos\\Zürich – 文.jpg"), "a picture");
        write(user_path(L"photos\\deep\\er\\notes.txt"), "notes");
        ASSERT_EQ(make_folders(user_path(L"empty")), 0u);
        protect_user_folder();
        point = take_point();
    }

    json roll_back_to_point() { return call(service_call::restore_from_point, point); }
    [[nodiscard]] std::wstring aside() const { return joined(store.folder(), L"aside"); }

    json point;
};

TEST_F(RollBack, folder_wrecked_by_ransomware_comes_back_byte_identical) {
    std::string before;
    ASSERT_EQ(hash_file(user_path(L"photos\\Zürich – 文.jpg"), before), 0u);
    write(user_path(L"report.txt"), "scrambled!");
    ASSERT_EQ(move_file(user_path(L"photos\\Zürich – 文.jpg"), user_path(L"photos\\Zürich – 文.jpg.locked")),
              0u);
    write(user_path(L"photos\\Zürich – 文.jpg.locked"), "scrambled picture");
    ASSERT_EQ(remove_file(user_path(L"photos\\deep\\er\\notes.txt")), 0u);
    ASSERT_TRUE(RemoveDirectoryW(user_path(L"photos\\deep\\er").c_str()));
    ASSERT_TRUE(RemoveDirectoryW(user_path(L"empty").c_str()));
    write(user_path(L"READ ME.txt"), "pay");
    write(user_path(L"new\\folder\\READ ME.txt"), "pay twice");

    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);

    std::string after;
    ASSERT_EQ(hash_file(user_path(L"photos\\Zürich – 文.jpg"), after), 0u);
    EXPECT_EQ(after, before);
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
    EXPECT_EQ(read(user_path(L"photos\\deep\\er\\notes.txt")), "notes");
    EXPECT_TRUE(is_plain_folder(user_path(L"empty")));
    EXPECT_EQ(count_files(user), 3u);
    EXPECT_FALSE(exists(user_path(L"new")));
}

TEST_F(RollBack, what_was_changed_or_appeared_is_moved_aside_and_not_destroyed) {
    write(user_path(L"report.txt"), "work of the afternoon");
    write(user_path(L"new\\idea.txt"), "an idea");
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(count_with_content(aside(), "work of the afternoon"), 1u);
    EXPECT_EQ(count_with_content(aside(), "an idea"), 1u);
}

TEST_F(RollBack, file_that_kept_its_size_and_time_but_not_its_content_is_restored) {
    const std::wstring path = user_path(L"report.txt");
    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_TRUE(GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data));
    write(path, "THE REPORT");
    {
        const win::unique_file file(
            CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &data.ftLastWriteTime));
    }
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(path), "the report");
}

TEST_F(RollBack, restored_file_has_its_time_and_attributes_again) {
    const std::wstring path = user_path(L"old.txt");
    write(path, "old");
    const FILETIME written{.dwLowDateTime = 0x10000000, .dwHighDateTime = 0x01d00000};
    {
        const win::unique_file file(
            CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &written));
    }
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    point = take_point();
    ASSERT_EQ(remove_file(path), 0u);
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    WIN32_FILE_ATTRIBUTE_DATA data{};
    ASSERT_TRUE(GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data));
    EXPECT_EQ(CompareFileTime(&data.ftLastWriteTime, &written), 0);
    EXPECT_NE(data.dwFileAttributes & FILE_ATTRIBUTE_READONLY, 0u);
}

TEST_F(RollBack, overwritten_read_only_file_is_restored) {
    write(user_path(L"report.txt"), "scrambled!");
    ASSERT_TRUE(SetFileAttributesW(user_path(L"report.txt").c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
}

TEST_F(RollBack, folder_in_a_files_place_and_file_in_a_folders_place_are_put_right) {
    ASSERT_EQ(remove_file(user_path(L"report.txt")), 0u);
    write(user_path(L"report.txt\\inside"), "in the way");
    ASSERT_TRUE(RemoveDirectoryW(user_path(L"empty").c_str()));
    write(user_path(L"empty"), "a file now");
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
    EXPECT_TRUE(is_plain_folder(user_path(L"empty")));
    EXPECT_EQ(count_with_content(aside(), "in the way"), 1u);
    EXPECT_EQ(count_with_content(aside(), "a file now"), 1u);
}

TEST_F(RollBack, folder_that_is_gone_altogether_is_made_anew) {
    ASSERT_TRUE(MoveFileW(user.c_str(), joined(root, L"elsewhere").c_str()));
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(user_path(L"photos\\deep\\er\\notes.txt")), "notes");
}

TEST_F(RollBack, file_in_use_is_reported_and_the_rest_restored) {
    write(user_path(L"report.txt"), "scrambled!");
    ASSERT_EQ(remove_file(user_path(L"photos\\deep\\er\\notes.txt")), 0u);
    {
        const win::unique_file held(CreateFileW(user_path(L"report.txt").c_str(),
                                                GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                                                nullptr));
        ASSERT_TRUE(held);
        const json reply = roll_back_to_point();
        EXPECT_EQ(status_of_reply(reply), 5);
        EXPECT_EQ(reply.at("data").at("failed"), 1);
    }
    EXPECT_EQ(read(user_path(L"photos\\deep\\er\\notes.txt")), "notes");
    EXPECT_EQ(count_files(user), 3u) << "no file is left beside";
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
}

TEST_F(RollBack, damaged_store_leaves_the_present_file_in_place) {
    std::string digest;
    ASSERT_EQ(hash_file(user_path(L"report.txt"), digest), 0u);
    write(joined(joined(store.folder(), L"objects"), std::wstring(digest.begin(), digest.end())), "damaged");
    write(user_path(L"report.txt"), "the present");
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 5);
    EXPECT_EQ(read(user_path(L"report.txt")), "the present");
}

TEST_F(RollBack, folder_that_is_no_longer_protected_is_not_touched) {
    ASSERT_EQ(status_of_reply(call(service_call::unprotect_folder, {{"folderName", user_utf8}})), 0);
    write(user_path(L"report.txt"), "mine alone");
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(user_path(L"report.txt")), "mine alone");
}

TEST_F(RollBack, paths_beyond_260_characters_are_copied_and_restored) {
    std::wstring deep = user;
    for (int level = 0; level < 6; ++level) {
        deep = joined(deep, std::wstring(60, L'a' + level));
    }
    write(joined(deep, L"far away.txt"), "far");
    ASSERT_GT(deep.size(), 360u);
    point = take_point();
    ASSERT_EQ(remove_file(joined(deep, L"far away.txt")), 0u);
    ASSERT_TRUE(RemoveDirectoryW(long_form(deep).c_str()));
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(joined(deep, L"far away.txt")), "far");
}

TEST_F(RollBack, files_go_aside_to_another_volume) {
    const std::wstring memory_disk = L"Z:\\dev\\shm";
    if (attributes_of(memory_disk) == INVALID_FILE_ATTRIBUTES) {
        GTEST_SKIP() << "there is no second volume";
    }
    vault elsewhere(joined(memory_disk, L"devservice test " + std::to_wstring(GetCurrentProcessId())));
    ASSERT_EQ(elsewhere.reload(), 0u);
    problems left_out;
    ASSERT_EQ(protect(elsewhere, user, std::wstring(), left_out), 0u);
    std::int64_t number = 0;
    ASSERT_EQ(take_restore_point(elsewhere, number, left_out), 0u);
    write(user_path(L"report.txt"), "work of the afternoon");
    write(user_path(L"new\\idea.txt"), "an idea");
    const roll_back_result result = roll_back(elsewhere, elsewhere.state(), elsewhere.state().copies.back());
    EXPECT_TRUE(result.failed.empty());
    EXPECT_EQ(result.moved_aside, 2u);
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
    EXPECT_EQ(count_with_content(result.aside, "work of the afternoon"), 1u);
    EXPECT_EQ(count_with_content(result.aside, "an idea"), 1u);
    EXPECT_EQ(count_files(user), 3u);
    remove_tree(elsewhere.folder());
}

TEST_F(RollBack, file_that_somebody_reads_is_reported_and_left_as_it_was) {
    write(user_path(L"report.txt"), "scrambled!");
    {
        win::unique_file reader;
        ASSERT_EQ(open_for_reading(user_path(L"report.txt"), reader), 0u);
        EXPECT_EQ(status_of_reply(roll_back_to_point()), 5);
        EXPECT_EQ(read(user_path(L"report.txt")), "scrambled!");
        EXPECT_EQ(count_files(user), 3u) << "nothing is left beside";
    }
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
    EXPECT_EQ(count_with_content(aside(), "scrambled!"), 1u);
}

TEST_F(RollBack, object_that_was_damaged_is_mended_by_the_next_point) {
    std::string digest;
    ASSERT_EQ(hash_file(user_path(L"report.txt"), digest), 0u);
    write(joined(joined(store.folder(), L"objects"), std::wstring(digest.begin(), digest.end())), "the re");
    static_cast<void>(take_point());
    write(user_path(L"report.txt"), "scrambled!");
    EXPECT_EQ(status_of_reply(roll_back_to_point()), 0);
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
}

TEST_F(RollBack, second_run_changes_nothing) {
    write(user_path(L"report.txt"), "scrambled!");
    EXPECT_EQ(roll_back_to_point().at("data").at("restored"), 1);
    const json reply = roll_back_to_point();
    EXPECT_EQ(reply.at("data").at("restored"), 0);
    EXPECT_EQ(reply.at("data").at("movedAside"), 0);
}

}  // namespace
}  // namespace ov::devservice
