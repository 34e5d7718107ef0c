#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "ovufc/ipc/drvport/wire.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class FolderCalls : public vault_fixture {
  protected:
    bool protected_by_status(const std::string& folder) {
        return call(service_call::get_folder_status, {{"folderName", folder}})
            .at("data")
            .at("protectedFolder")
            .get<bool>();
    }
    void set_flags(std::uint32_t flags) {
        ASSERT_EQ(store.change([&](service_state& state) -> DWORD {
            state.flags = flags;
            return 0;
        }),
                  0u);
    }
};

TEST_F(FolderCalls, folder_is_protected_until_it_is_unprotected) {
    EXPECT_FALSE(protected_by_status(user_utf8));
    protect_user_folder();
    EXPECT_TRUE(protected_by_status(user_utf8));
    const json reply = call(service_call::unprotect_folder, {{"folderName", user_utf8}});
    EXPECT_EQ(status_of_reply(reply), 0);
    EXPECT_TRUE(reply.contains("data"));
    EXPECT_FALSE(protected_by_status(user_utf8));
}

TEST_F(FolderCalls, status_does_not_look_at_case_or_a_trailing_backslash) {
    protect_user_folder();
    std::wstring upper = user;
    CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    EXPECT_TRUE(protected_by_status(to_utf8_lossy(upper) + "\\"));
}

TEST_F(FolderCalls, folder_inside_is_protected_and_a_neighbour_is_not) {
    protect_user_folder();
    EXPECT_TRUE(protected_by_status(user_utf8 + "\\inside\\deep"));
    EXPECT_FALSE(protected_by_status(user_utf8 + "name"));
    EXPECT_EQ(status_of_reply(call(service_call::unprotect_folder, {{"folderName", user_utf8 + "\\inside"}})),
              4);
    EXPECT_TRUE(protected_by_status(user_utf8));
}

TEST_F(FolderCalls, protecting_the_folder_around_takes_in_the_inner_one) {
    ASSERT_EQ(make_folders(user_path(L"inner")), 0u);
    ASSERT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", user_utf8 + "\\inner"}})),
              0);
    protect_user_folder();
    ASSERT_EQ(store.state().folders.size(), 1u);
    EXPECT_EQ(store.state().folders[0].path, user);
}

TEST_F(FolderCalls, object_path_is_remembered) {
    ASSERT_EQ(status_of_reply(call(service_call::protect_folder_as,
                                   {{"folderName", user_utf8}, {"objPath", "D:\\Other place"}})),
              0);
    EXPECT_EQ(store.state().folders.at(0).object_path, L"D:\\Other place");
    ASSERT_EQ(status_of_reply(call(service_call::protect_folder_as,
                                   {{"folderName", user_utf8}, {"objPath", "E:\\third"}})),
              0);
    EXPECT_EQ(store.state().folders.at(0).object_path, L"E:\\third");
    EXPECT_EQ(store.state().folders.size(), 1u);
}

TEST_F(FolderCalls, state_survives_a_restart) {
    protect_user_folder();
    vault restarted(store.folder());
    ASSERT_EQ(restarted.reload(), 0u);
    EXPECT_TRUE(counts_as_protected(restarted.state(), user));
    EXPECT_EQ(restarted.state().generation, store.state().generation);
}

TEST_F(FolderCalls, protecting_takes_a_first_copy) {
    write(user_path(L"a.txt"), "first");
    protect_user_folder();
    ASSERT_EQ(store.state().copies.size(), 1u);
    EXPECT_EQ(store.state().copies[0].folders.at(0).records.at(0).relative, L"a.txt");
    EXPECT_EQ(count_with_content(joined(store.folder(), L"objects"), "first"), 1u);
}

TEST_F(FolderCalls, generation_changes_with_the_list_only) {
    const std::uint32_t before = store.state().generation;
    protect_user_folder();
    const std::uint32_t after = store.state().generation;
    EXPECT_NE(after, before);
    static_cast<void>(take_point());
    EXPECT_EQ(store.state().generation, after);
    static_cast<void>(call(service_call::unprotect_folder, {{"folderName", user_utf8}}));
    EXPECT_NE(store.state().generation, after);
}

TEST_F(FolderCalls, places_that_cannot_be_protected_are_refused) {
    EXPECT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", "C:\\"}})), 6);
    EXPECT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", user_utf8 + "\\absent"}})),
              4);
    EXPECT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", to_utf8_lossy(root)}})), 6)
        << "holds the state folder";
    ASSERT_EQ(make_folders(joined(store.folder(), L"x")), 0u);
    EXPECT_EQ(status_of_reply(call(service_call::protect_folder,
                                   {{"folderName", to_utf8_lossy(joined(store.folder(), L"x"))}})),
              6);
    EXPECT_TRUE(store.state().folders.empty());
}

TEST_F(FolderCalls, ui_level_follows_the_flag) {
    EXPECT_EQ(call(service_call::get_folder_status, {{"folderName", user_utf8}}).at("data").at("uiLevel"),
              "full");
    set_flags(ORV_FLAG_UI_RESTRICTED);
    EXPECT_EQ(call(service_call::get_folder_status, {{"folderName", user_utf8}}).at("data").at("uiLevel"),
              "restricted");
}

TEST_F(FolderCalls, unprotect_is_refused_while_it_is_blocked) {
    protect_user_folder();
    set_flags(ORV_FLAG_UNPROTECT_BLOCKED);
    EXPECT_EQ(status_of_reply(call(service_call::unprotect_folder, {{"folderName", user_utf8}})), 6);
    EXPECT_TRUE(protected_by_status(user_utf8));
}

TEST_F(FolderCalls, listed_locations_count_as_protected) {
    ASSERT_EQ(store.change([](service_state& state) -> DWORD {
        state.rules = {L"Documents"};
        state.managed = {L"D:\\managed"};
        state.cloud[0] = {L"D:\\cloud"};
        return 0;
    }),
              0u);
    EXPECT_TRUE(protected_by_status("C:\\users\\anybody\\documents\\x"));
    EXPECT_FALSE(protected_by_status("C:\\Users\\anybody"));
    EXPECT_FALSE(protected_by_status("C:\\Users\\anybody\\Documents2"));
    EXPECT_TRUE(protected_by_status("D:\\managed\\x"));
    EXPECT_TRUE(protected_by_status("D:\\cloud"));
}

TEST_F(FolderCalls, deleted_files_are_exported_to_the_desktop) {
    write(user_path(L"kept.txt"), "kept");
    write(user_path(L"sub\\gone.txt"), "first form");
    protect_user_folder();
    write(user_path(L"sub\\gone.txt"), "last form");
    static_cast<void>(take_point());
    ASSERT_EQ(remove_file(user_path(L"sub\\gone.txt")), 0u);
    set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const json reply =
        call(service_call::export_folder, {{"exportType", "recycleBin"}, {"folderName", user_utf8}});
    EXPECT_EQ(status_of_reply(reply), 0);
    EXPECT_EQ(reply.at("data").at("files"), 1);
    EXPECT_EQ(count_files(desktop), 1u);
    EXPECT_EQ(count_with_content(desktop, "last form"), 1u);
}

TEST_F(FolderCalls, older_versions_are_exported_to_the_desktop) {
    write(user_path(L"plan.txt"), "one");
    protect_user_folder();
    write(user_path(L"plan.txt"), "two");
    static_cast<void>(take_point());
    static_cast<void>(take_point());
    write(user_path(L"plan.txt"), "three");
    set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    ASSERT_EQ(status_of_reply(
                  call(service_call::export_folder, {{"exportType", "chronels"}, {"folderName", user_utf8}})),
              0);
    EXPECT_EQ(count_files(desktop), 2u);
    EXPECT_EQ(count_with_content(desktop, "one"), 1u);
    EXPECT_EQ(count_with_content(desktop, "two"), 1u);
}

TEST_F(FolderCalls, export_needs_its_flag_a_known_type_and_a_protected_folder) {
    EXPECT_EQ(status_of_reply(
                  call(service_call::export_folder, {{"exportType", "chronels"}, {"folderName", user_utf8}})),
              6);
    set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    EXPECT_EQ(status_of_reply(
                  call(service_call::export_folder, {{"exportType", "chronels"}, {"folderName", user_utf8}})),
              3);
    EXPECT_EQ(status_of_reply(call(service_call::export_folder,
                                   {{"exportType", "RecycleBin"}, {"folderName", user_utf8}})),
              1);
    EXPECT_EQ(count_files(desktop), 0u);
}

TEST_F(FolderCalls, export_of_nothing_makes_no_folder) {
    write(user_path(L"a.txt"), "same");
    protect_user_folder();
    set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    EXPECT_EQ(call(service_call::export_folder, {{"exportType", "chronels"}, {"folderName", user_utf8}})
                  .at("data")
                  .at("files"),
              0);
    EXPECT_TRUE(RemoveDirectoryW(desktop.c_str())) << "the desktop is empty";
}

}  // namespace
}  // namespace ov::devservice
