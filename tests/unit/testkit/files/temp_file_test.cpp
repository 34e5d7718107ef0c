#include "testkit/files/temp_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using ov::test::temp_file;

std::int64_t size_of(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA found{};
    EXPECT_TRUE(GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &found));
    return (static_cast<std::int64_t>(found.nFileSizeHigh) << 32) + found.nFileSizeLow;
}

TEST(TempFile, in_scope_is_there_with_its_content) {
    const temp_file file("abc");
    EXPECT_TRUE(file.exists());
    EXPECT_EQ(size_of(file.path()), 3);
}

TEST(TempFile, two_at_once_have_names_of_their_own) {
    const temp_file one("");
    const temp_file other("");
    EXPECT_NE(one.path(), other.path());
}

TEST(TempFile, resized_has_that_size) {
    const temp_file file("abc");
    file.resize(0x100000005);
    EXPECT_EQ(size_of(file.path()), 0x100000005);
}

TEST(TempFile, end_of_scope_deletes_it) {
    std::wstring path;
    {
        const temp_file file("abc");
        path = file.path();
    }
    EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(TempFile, deleted_by_somebody_else_is_seen) {
    const temp_file file("abc");
    ASSERT_TRUE(DeleteFileW(file.path().c_str()));
    EXPECT_FALSE(file.exists());
}

}  // namespace
