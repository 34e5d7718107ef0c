#include "companions/devservice/files/file_io.h"
#include "companions/devservice/roll_back/roll_back.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

/// What a roll-back has no business with: what the restore point saw but could not keep, what it could not
/// see, and what a link leads to.
class LeftAlone : public vault_fixture {
  protected:
    void SetUp() override {
        write(user_path(L"report.txt"), "the report");
        write(elsewhere(L"healthy.txt"), "healthy");
    }

    [[nodiscard]] std::wstring elsewhere(const std::wstring& name) const {
        return joined(joined(root, L"elsewhere"), name);
    }

    [[nodiscard]] static win::unique_file hold(const std::wstring& path) {
        return win::unique_file(
            CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    }

    int roll_back_to(const json& point) {
        return status_of_reply(call(service_call::restore_from_point, point));
    }
};

TEST_F(LeftAlone, file_that_was_held_when_the_point_was_taken) {
    write(user_path(L"held.txt"), "healthy");
    protect_user_folder();
    win::unique_file held = hold(user_path(L"held.txt"));
    ASSERT_TRUE(held);
    const json point = take_point(1);
    held.reset();
    write(user_path(L"report.txt"), "scrambled!");
    EXPECT_EQ(roll_back_to(point), 0);
    EXPECT_EQ(read(user_path(L"held.txt")), "healthy");
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
}

TEST_F(LeftAlone, file_that_was_held_at_the_point_and_is_gone_or_changed_since_is_reported) {
    write(user_path(L"held.txt"), "healthy");
    protect_user_folder();
    win::unique_file held = hold(user_path(L"held.txt"));
    const json point = take_point(1);
    held.reset();
    write(user_path(L"held.txt"), "another length");
    EXPECT_EQ(roll_back_to(point), 5);
    EXPECT_EQ(read(user_path(L"held.txt")), "another length");
    ASSERT_EQ(remove_file(user_path(L"held.txt")), 0u);
    EXPECT_EQ(roll_back_to(point), 5);
}

TEST_F(LeftAlone, file_whose_name_cannot_be_recorded) {
    const std::wstring odd = user_path(L"12:30 notes.txt");
    write(odd, "healthy");
    EXPECT_EQ(call(service_call::protect_folder, {{"folderName", user_utf8}}).at("data").at("leftOut"), 1);
    ASSERT_EQ(store.reload(), 0u) << "the state can be read back";
    const json point = take_point(1);
    write(user_path(L"report.txt"), "scrambled!");
    EXPECT_EQ(roll_back_to(point), 0);
    EXPECT_EQ(read(odd), "healthy");
    EXPECT_EQ(read(user_path(L"report.txt")), "the report");
}

TEST_F(LeftAlone, file_below_a_folder_whose_name_cannot_be_recorded) {
    const std::wstring odd = user_path(L"12:30\\notes.txt");
    write(odd, "healthy");
    EXPECT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", user_utf8}})), 0);
    EXPECT_EQ(roll_back_to(take_point(2)), 0);
    EXPECT_EQ(read(odd), "healthy");
}

/// Wine's file systems give no name that is not well formed, so one is put into what the search found.
BOOL(WINAPI* find_next)(HANDLE, LPWIN32_FIND_DATAW) = nullptr;
BOOL WINAPI find_next_with_half_a_pair(HANDLE search, LPWIN32_FIND_DATAW found) {
    const BOOL result = find_next(search, found);
    if (result && wcscmp(found->cFileName, L"half.txt") == 0) {
        found->cFileName[0] = 0xD83D;
    }
    return result;
}

TEST_F(LeftAlone, file_whose_name_is_not_well_formed) {
    write(user_path(L"half.txt"), "healthy");
    test::import_patch<decltype(FindNextFileW)> patch(GetModuleHandleW(nullptr), "kernel32.dll",
                                                      "FindNextFileW", find_next_with_half_a_pair);
    find_next = patch.original();
    EXPECT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", user_utf8}})), 0);
    EXPECT_EQ(roll_back_to(take_point(1)), 0);
    EXPECT_EQ(read(user_path(L"half.txt")), "healthy");
}

/// A folder that nobody may list: whoever runs the tests may list every one.
HANDLE(WINAPI* find_first)(LPCWSTR, FINDEX_INFO_LEVELS, LPVOID, FINDEX_SEARCH_OPS, LPVOID, DWORD) = nullptr;
HANDLE WINAPI find_first_unless_sealed(LPCWSTR path, FINDEX_INFO_LEVELS level, LPVOID found,
                                       FINDEX_SEARCH_OPS search, LPVOID filter, DWORD flags) {
    if (wcsstr(path, L"\\sealed\\") != nullptr) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    return find_first(path, level, found, search, filter, flags);
}

TEST_F(LeftAlone, files_of_a_folder_that_could_not_be_listed) {
    write(user_path(L"sealed\\a.txt"), "healthy");
    write(user_path(L"sealed\\deep\\b.txt"), "healthy too");
    protect_user_folder();
    json point;
    {
        test::import_patch<decltype(FindFirstFileExW)> patch(GetModuleHandleW(nullptr), "kernel32.dll",
                                                             "FindFirstFileExW", find_first_unless_sealed);
        find_first = patch.original();
        point = take_point(1);
    }
    write(user_path(L"appeared.txt"), "pay");
    EXPECT_EQ(roll_back_to(point), 0);
    EXPECT_EQ(read(user_path(L"sealed\\a.txt")), "healthy");
    EXPECT_EQ(read(user_path(L"sealed\\deep\\b.txt")), "healthy too");
    EXPECT_FALSE(exists(user_path(L"appeared.txt")));
}

TEST_F(LeftAlone, what_a_link_to_a_file_leads_to) {
    link(user_path(L"linked.txt"), elsewhere(L"healthy.txt"));
    protect_user_folder();
    const json point = take_point();
    write(elsewhere(L"healthy.txt"), "work of the afternoon");
    EXPECT_EQ(roll_back_to(point), 0);
    EXPECT_EQ(read(elsewhere(L"healthy.txt")), "work of the afternoon");
    EXPECT_TRUE(exists(user_path(L"linked.txt")));
    EXPECT_EQ(count_with_content(joined(store.folder(), L"objects"), "healthy"), 0u) << "it was not followed";
}

TEST_F(LeftAlone, link_that_appeared_since) {
    protect_user_folder();
    const json point = take_point();
    link(user_path(L"linked.txt"), elsewhere(L"healthy.txt"));
    link(user_path(L"linked folder"), joined(root, L"elsewhere"));
    EXPECT_EQ(roll_back_to(point), 0);
    EXPECT_EQ(read(elsewhere(L"healthy.txt")), "healthy");
    EXPECT_TRUE(exists(user_path(L"linked.txt")));
    EXPECT_TRUE(exists(user_path(L"linked folder\\healthy.txt")));
}

TEST_F(LeftAlone, link_in_a_files_place_is_not_replaced_through) {
    protect_user_folder();
    const json point = take_point();
    ASSERT_EQ(remove_file(user_path(L"report.txt")), 0u);
    link(user_path(L"report.txt"), elsewhere(L"healthy.txt"));
    EXPECT_EQ(roll_back_to(point), 5) << "a link that Wine would follow cannot be moved";
    EXPECT_EQ(read(elsewhere(L"healthy.txt")), "healthy");
}

TEST_F(LeftAlone, folder_that_a_link_inside_leads_to) {
    write(user_path(L"photos\\healthy.txt"), "a picture");
    protect_user_folder();
    const json point = take_point();
    ASSERT_TRUE(MoveFileW(user_path(L"photos").c_str(), joined(root, L"photos moved").c_str()));
    link(user_path(L"photos"), joined(root, L"elsewhere"));
    EXPECT_EQ(roll_back_to(point), 5);
    EXPECT_EQ(read(elsewhere(L"healthy.txt")), "healthy");
    EXPECT_EQ(count_files(joined(root, L"elsewhere")), 1u);
}

TEST_F(LeftAlone, folder_that_a_link_in_place_of_a_parent_leads_to) {
    const std::wstring parent = joined(root, L"parent");
    write(joined(parent, L"docs\\mine.txt"), "mine");
    write(elsewhere(L"docs\\healthy.txt"), "healthy");
    const std::string docs = user_utf8.substr(0, user_utf8.size() - 4) + "parent\\docs";
    ASSERT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", docs}})), 0);
    const json point = take_point();
    ASSERT_TRUE(MoveFileW(parent.c_str(), joined(root, L"parent moved").c_str()));
    link(parent, joined(root, L"elsewhere"));
    EXPECT_EQ(roll_back_to(point), 5);
    EXPECT_EQ(read(elsewhere(L"docs\\healthy.txt")), "healthy");
    EXPECT_EQ(count_files(joined(root, L"elsewhere")), 2u);
    static_cast<void>(take_point(1));
    write(elsewhere(L"more\\healthy.txt"), "healthy");
    const std::string more = docs.substr(0, docs.size() - 4) + "more";
    EXPECT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", more}})), 4)
        << "nor can it be protected";
}

TEST_F(LeftAlone, folder_in_a_files_place_that_does_not_become_empty) {
    protect_user_folder();
    const json point = take_point();
    ASSERT_EQ(remove_file(user_path(L"report.txt")), 0u);
    write(user_path(L"report.txt\\12:30.txt"), "healthy");
    EXPECT_EQ(roll_back_to(point), 5);
    EXPECT_EQ(read(user_path(L"report.txt\\12:30.txt")), "healthy");
}

}  // namespace
}  // namespace ov::devservice
