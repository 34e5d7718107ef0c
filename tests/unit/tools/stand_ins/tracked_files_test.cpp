#include "tools/stand_ins/tracked_files.h"

#include <gtest/gtest.h>

#include "ovufc/win/handle.h"
#include "testkit/files/temp_folder.h"

namespace ov::stand_ins {
namespace {

/// Asked through this program's own import table, as the module asks through its own.
FILE_ATTRIBUTE_TAG_INFO mark_of(const std::wstring& path) {
    const win::unique_file file(CreateFileW(
        path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
        OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    FILE_ATTRIBUTE_TAG_INFO answer{};
    EXPECT_TRUE(GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &answer, sizeof answer));
    return answer;
}

TEST(TrackedFiles, files_bear_the_mark_and_folders_do_not) {
    const test::temp_folder folder;
    const std::wstring file = folder.make_file(L"letter.txt", "text");
    EXPECT_EQ(mark_of(file).FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT, 0U);
    ASSERT_TRUE(answer_tracked_mark(GetModuleHandleW(nullptr)));
    EXPECT_NE(mark_of(file).FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT, 0U);
    EXPECT_EQ(mark_of(file).ReparseTag, 0x51U);
    EXPECT_EQ(mark_of(folder.path()).FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT, 0U);
}

TEST(TrackedFiles, module_that_does_not_ask_is_left_alone) {
    EXPECT_FALSE(answer_tracked_mark(GetModuleHandleW(L"ntdll.dll")));
}

}  // namespace
}  // namespace ov::stand_ins
