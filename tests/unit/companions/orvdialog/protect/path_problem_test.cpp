#include "companions/orvdialog/protect/path_problem.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "testkit/imports/import_patch.h"

namespace ov::dialog {
namespace {

constexpr std::size_t limit_chars = 259;

path_problem problem(const std::wstring& typed) {
    return problem_of(tidy_path(typed), limit_chars);
}

TEST(PathProblem, folder_that_is_there_has_none) {
    EXPECT_EQ(problem(L"C:\\windows"), path_problem::none);
    EXPECT_EQ(problem(L" \"c:/windows/system32/\" "), path_problem::none);
}

TEST(PathProblem, what_is_no_full_path_is_said) {
    for (const wchar_t* path : {L"", L"  ", L"windows", L"\\windows", L"C:", L"C:windows", L"1:\\a",
                                L"\\\\?\\C:\\windows", L"\\\\.\\C:\\windows", L"Ä:\\a"}) {
        EXPECT_EQ(problem(path), path_problem::no_full_path) << testing::PrintToString(std::wstring(path));
    }
}

TEST(PathProblem, root_of_a_volume_is_said) {
    EXPECT_EQ(problem(L"C:\\"), path_problem::root);
    EXPECT_EQ(problem(L"C:\\windows\\.."), path_problem::root);
}

/// A volume is mounted in C:\windows.
BOOL WINAPI mounted_in_windows(LPCWSTR, LPWSTR root, DWORD size_chars) {
    lstrcpynW(root, L"C:\\Windows\\", static_cast<int>(size_chars));
    return TRUE;
}

TEST(PathProblem, folder_that_a_volume_is_mounted_in_is_a_root_too) {
    const test::import_patch<decltype(GetVolumePathNameW)> patch(
        GetModuleHandleW(nullptr), "kernel32.dll;api-ms-*", "GetVolumePathNameW", mounted_in_windows);
    EXPECT_EQ(problem(L"C:\\windows"), path_problem::root);
    EXPECT_EQ(problem(L"C:\\windows\\system32"), path_problem::none);
}

TEST(PathProblem, path_on_a_server_is_said_without_asking_it) {
    EXPECT_EQ(problem(L"\\\\server\\share\\folder"), path_problem::network);
}

TEST(PathProblem, path_on_a_network_drive_is_said) {
    const test::import_patch<decltype(GetDriveTypeW)> patch(
        GetModuleHandleW(nullptr), "kernel32.dll;api-ms-*", "GetDriveTypeW",
        [](LPCWSTR root) WINAPI -> UINT { return root[0] == L'N' ? DRIVE_REMOTE : DRIVE_FIXED; });
    EXPECT_EQ(problem(L"N:\\folder"), path_problem::network);
    EXPECT_EQ(problem(L"C:\\windows"), path_problem::none);
}

TEST(PathProblem, path_beyond_the_limit_is_said) {
    EXPECT_EQ(problem(L"C:\\" + std::wstring(limit_chars - 3, L'x')), path_problem::gone);
    EXPECT_EQ(problem(L"C:\\" + std::wstring(limit_chars - 2, L'x')), path_problem::too_long);
    EXPECT_EQ(problem(L"C:\\" + std::wstring(40'000, L'x')), path_problem::too_long);
}

TEST(PathProblem, path_that_is_not_there_is_said) {
    EXPECT_EQ(problem(L"C:\\no such folder"), path_problem::gone);
}

TEST(TidyPath, surroundings_and_detours_are_taken_away) {
    EXPECT_EQ(tidy_path(L" \"C:\\a\\..\\b\\\" "), L"C:\\b");
    EXPECT_EQ(tidy_path(L"C:\\"), L"C:\\");
    EXPECT_EQ(tidy_path(L"\t"), L"");
}

}  // namespace
}  // namespace ov::dialog
