#include "testkit/files/temp_folder.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace ov::test {
namespace {

bool exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

TEST(TempFolder, folder_and_all_in_it_are_gone_after_the_scope) {
    std::wstring path;
    {
        const temp_folder folder;
        path = folder.path();
        folder.make_folder(L"inner");
        folder.make_file(L"inner\\deep.txt", "text");
        const std::wstring read_only = folder.make_file(L"read only.txt");
        SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
        EXPECT_TRUE(exists(path + L"\\inner\\deep.txt"));
    }
    EXPECT_FALSE(exists(path));
}

TEST(TempFolder, two_folders_are_not_the_same) {
    const temp_folder one;
    const temp_folder other;
    EXPECT_NE(one.path(), other.path());
}

}  // namespace
}  // namespace ov::test
