#include <gtest/gtest.h>

#include <windows.h>

#include "companions/devservice/files/path.h"

namespace ov::devservice {
namespace {

TEST(CleanPath, absolute_path_loses_dots_and_the_trailing_backslash) {
    EXPECT_EQ(clean_path(L"C:\\a\\.\\b\\..\\c\\"), L"C:\\a\\c");
    EXPECT_EQ(clean_path(L"C:\\"), L"C:\\");
    EXPECT_EQ(clean_path(L"c:/a/b"), L"c:\\a\\b");
    EXPECT_EQ(clean_path(L"\\\\?\\C:\\a"), L"C:\\a");
    EXPECT_EQ(clean_path(L"\\\\server\\share\\a\\"), L"\\\\server\\share\\a");
}

TEST(CleanPath, anything_else_is_refused) {
    const std::wstring with_nul(L"C:\\a\0b", 6);
    for (const std::wstring& path :
         {std::wstring(), std::wstring(L"a"), std::wstring(L"..\\a"), std::wstring(L"C:a"),
          std::wstring(L"\\a"), std::wstring(L"\\\\.\\orvdrv"), std::wstring(L"\\\\?\\GLOBALROOT\\Device"),
          std::wstring(L"C:\\a:stream"), std::wstring(L"C:\\a*"), std::wstring(L"C:\\a\nb"), with_nul,
          L"C:\\" + std::wstring(40'000, L'a')}) {
        EXPECT_EQ(clean_path(path), std::nullopt) << path.size();
    }
}

TEST(CleanPath, of_four_hundred_characters_is_kept_whole) {
    const std::wstring path = L"C:\\" + std::wstring(200, L'a') + L"\\" + std::wstring(200, L'b');
    EXPECT_EQ(clean_path(path), path);
}

TEST(IsWithin, folder_compares_whole_names_without_regard_to_case) {
    EXPECT_TRUE(is_within(L"C:\\Data", L"c:\\data"));
    EXPECT_TRUE(is_within(L"C:\\DATA\\x\\y", L"c:\\data"));
    EXPECT_TRUE(is_within(L"C:\\x", L"C:\\"));
    EXPECT_FALSE(is_within(L"C:\\Database", L"C:\\Data"));
    EXPECT_FALSE(is_within(L"C:\\", L"C:\\Data"));
    EXPECT_TRUE(is_within(L"C:\\ÄRGER\\a", L"c:\\ärger"));
}

TEST(RelativeTo, and_joined_take_a_path_apart_and_together) {
    EXPECT_EQ(relative_to(L"C:\\a\\b\\c", L"C:\\a"), L"b\\c");
    EXPECT_EQ(relative_to(L"C:\\a", L"C:\\a"), L"");
    EXPECT_EQ(relative_to(L"C:\\a", L"C:\\"), L"a");
    EXPECT_EQ(joined(L"C:\\", L"a"), L"C:\\a");
    EXPECT_EQ(joined(L"C:\\a", L"b"), L"C:\\a\\b");
    EXPECT_EQ(joined(L"", L"b"), L"b");
    EXPECT_EQ(joined(L"C:\\a", L""), L"C:\\a");
}

TEST(IsSafeRelative, path_stays_below_its_folder) {
    EXPECT_TRUE(is_safe_relative(L"a\\b.txt"));
    EXPECT_TRUE(is_safe_relative(L"...a"));
    for (const wchar_t* path :
         {L"", L"..", L"a\\..\\..\\b", L"\\a", L"a\\", L"a\\\\b", L"C:\\a", L"a:b", L".", L"a/../b"}) {
        EXPECT_FALSE(is_safe_relative(path)) << path;
    }
}

TEST(ParentFolder, of_what_stands_at_the_top_is_the_root) {
    const std::wstring deep = L"C:\\" + std::wstring(200, L'a') + L"\\" + std::wstring(200, L'b');
    EXPECT_EQ(parent_folder(deep + L"\\c.txt"), deep);
    EXPECT_EQ(parent_folder(L"C:\\a"), L"C:\\");
    EXPECT_EQ(parent_folder(L"C:\\"), L"C:\\");
    EXPECT_EQ(parent_folder(L"\\\\server\\share\\a"), L"\\\\server\\share");
}

TEST(IsVolumeRoot, of_a_drive_and_a_share) {
    EXPECT_TRUE(is_volume_root(L"C:\\"));
    EXPECT_TRUE(is_volume_root(L"\\\\server\\share"));
    EXPECT_FALSE(is_volume_root(L"C:\\a"));
    EXPECT_FALSE(is_volume_root(L"\\\\server\\share\\a"));
}

}  // namespace
}  // namespace ov::devservice
