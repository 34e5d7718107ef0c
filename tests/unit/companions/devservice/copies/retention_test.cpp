#include "companions/devservice/copies/chronels.h"
#include "companions/devservice/files/file_io.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

/// What is kept of copies: the newest sixteen of each kind, and of older ones sixteen versions of each file.
class Retention : public vault_fixture {
  protected:
    [[nodiscard]] std::size_t points() const {
        std::size_t count = 0;
        for (const stored_copy& copy : store.state().copies) {
            count += copy.kind == copy_kind::restore_point ? 1 : 0;
        }
        return count;
    }
    [[nodiscard]] std::size_t objects() const { return count_files(joined(store.folder(), L"objects")); }
    [[nodiscard]] std::size_t versions(const wchar_t* name) const {
        return chronels_of(store.state(), user_path(name)).size();
    }
};

TEST_F(Retention, newest_sixteen_points_are_kept_and_each_can_be_restored) {
    write(user_path(L"plan.txt"), "start");
    protect_user_folder();
    std::vector<json> taken;
    for (int count = 0; count < 20; ++count) {
        write(user_path(L"plan.txt"), "plan " + std::to_string(count));
        taken.push_back(take_point());
    }
    EXPECT_EQ(points(), 16u);
    for (int count = 0; count < 20; ++count) {
        EXPECT_EQ(status_of_reply(call(service_call::restore_from_point, taken[count])), count < 4 ? 4 : 0)
            << count;
        if (count >= 4) {
            EXPECT_EQ(read(user_path(L"plan.txt")), "plan " + std::to_string(count));
        }
    }
}

TEST_F(Retention, files_keep_sixteen_versions_and_the_rest_is_removed_from_the_store) {
    protect_user_folder();
    write(user_path(L"constant.txt"), "constant");
    for (int count = 0; count < 40; ++count) {
        write(user_path(L"plan.txt"), "plan " + std::to_string(count));
        static_cast<void>(take_point());
    }
    EXPECT_EQ(versions(L"plan.txt"), 16u);
    EXPECT_EQ(versions(L"constant.txt"), 1u);
    EXPECT_EQ(objects(), 17u);
}

TEST_F(Retention, version_that_no_point_holds_any_more_is_still_a_chronel) {
    protect_user_folder();
    write(user_path(L"plan.txt"), "first draft");
    static_cast<void>(take_point());
    write(user_path(L"plan.txt"), "second draft");
    for (int count = 0; count < 20; ++count) {
        static_cast<void>(take_point());
    }
    const std::vector<chronel> found = chronels_of(store.state(), user_path(L"plan.txt"));
    ASSERT_EQ(found.size(), 2u);
    const std::string clone = std::to_string(found[1].copy->number);
    EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel,
                                   {{"fileName", user_utf8 + "\\plan.txt"}, {"cloneFileName", clone}})),
              0);
    EXPECT_EQ(read(user_path(L"plan.txt")), "first draft");
}

TEST_F(Retention, file_that_sixteen_points_saw_gone_is_let_go) {
    protect_user_folder();
    write(user_path(L"old.txt"), "old");
    static_cast<void>(take_point());
    ASSERT_EQ(remove_file(user_path(L"old.txt")), 0u);
    for (int count = 0; count < 15; ++count) {
        static_cast<void>(take_point());
    }
    EXPECT_EQ(versions(L"old.txt"), 1u);
    static_cast<void>(take_point());
    EXPECT_EQ(versions(L"old.txt"), 0u);
    EXPECT_EQ(objects(), 0u);
}

TEST_F(Retention, versions_of_a_file_that_is_held_all_the_time_stay) {
    protect_user_folder();
    write(user_path(L"held.txt"), "held");
    static_cast<void>(take_point());
    const win::unique_file held(
        CreateFileW(user_path(L"held.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    for (int count = 0; count < 20; ++count) {
        static_cast<void>(take_point(1));
    }
    EXPECT_EQ(versions(L"held.txt"), 1u);
}

TEST_F(Retention, versions_in_a_folder_that_the_points_do_not_hold_stay) {
    protect_user_folder();
    write(user_path(L"plan.txt"), "draft");
    static_cast<void>(take_point());
    ASSERT_EQ(status_of_reply(call(service_call::unprotect_folder, {{"folderName", user_utf8}})), 0);
    ASSERT_EQ(status_of_reply(call(service_call::protect_folder,
                                   {{"folderName", user_utf8.substr(0, user_utf8.size() - 4) + "desktop"}})),
              0);
    for (int count = 0; count < 20; ++count) {
        static_cast<void>(take_point());
    }
    EXPECT_EQ(versions(L"plan.txt"), 1u);
}

TEST_F(Retention, objects_of_a_point_that_was_interrupted_go_with_the_next) {
    write(user_path(L"plan.txt"), "draft");
    protect_user_folder();
    object_store::object stored;
    write(joined(root, L"x"), "never recorded");
    ASSERT_EQ(store.objects().put(joined(root, L"x"), stored), 0u);
    EXPECT_EQ(objects(), 2u);
    static_cast<void>(take_point());
    EXPECT_EQ(objects(), 1u);
}

}  // namespace
}  // namespace ov::devservice
