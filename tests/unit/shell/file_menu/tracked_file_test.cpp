#include "shell/file_menu/tracked_file.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testkit/checks/handle_ledger.h"
#include "testkit/files/temp_file.h"
#include "testkit/imports/import_patch.h"

namespace ov::shell {
namespace {

using test::import_patch;

// The file systems below Wine keep no reparse tags of other makers: the query is answered here.
struct tag_query {
    FILE_INFO_BY_HANDLE_CLASS asked_class;
    DWORD asked_bytes;
    BOOL result;
    DWORD attributes;
    DWORD tag;
};
tag_query query;

BOOL WINAPI answer_query(HANDLE /*file*/, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID buffer, DWORD size) {
    query.asked_class = kind;
    query.asked_bytes = size;
    if (query.result != FALSE) {
        *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(buffer) = {query.attributes, query.tag};
    }
    return query.result;
}

class TrackedFile : public testing::Test {
  protected:
    bool with(BOOL result, DWORD attributes, DWORD tag) {
        query = {FileBasicInfo, 0, result, attributes, tag};
        return is_tracked_file(file_.path());
    }

    test::temp_file file_{"content"};
    import_patch<decltype(GetFileInformationByHandleEx)> patch_{
        GetModuleHandleW(nullptr), "kernel32.dll", "GetFileInformationByHandleEx", &answer_query};
};

TEST_F(TrackedFile, the_drivers_tag_on_a_reparse_point_is_tracked) {
    EXPECT_TRUE(with(TRUE, FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_ARCHIVE, 0x51));
    EXPECT_EQ(query.asked_class, FileAttributeTagInfo);
    EXPECT_EQ(query.asked_bytes, 8U);
}

TEST_F(TrackedFile, anything_else_is_not) {
    EXPECT_FALSE(with(FALSE, FILE_ATTRIBUTE_REPARSE_POINT, 0x51)) << "the query failed";
    EXPECT_FALSE(with(TRUE, FILE_ATTRIBUTE_ARCHIVE, 0x51)) << "no reparse point";
    EXPECT_FALSE(with(TRUE, FILE_ATTRIBUTE_REPARSE_POINT, 0x50));
    EXPECT_FALSE(with(TRUE, FILE_ATTRIBUTE_REPARSE_POINT, 0));
    EXPECT_FALSE(with(TRUE, FILE_ATTRIBUTE_REPARSE_POINT, 0xA0000051)) << "another maker's tag";
}

TEST_F(TrackedFile, file_that_is_not_there_is_not) {
    query = {FileBasicInfo, 0, TRUE, FILE_ATTRIBUTE_REPARSE_POINT, 0x51};
    EXPECT_FALSE(is_tracked_file(file_.path() + L".missing"));
    EXPECT_EQ(query.asked_bytes, 0U) << "nothing was asked";
}

TEST_F(TrackedFile, handle_is_closed_either_way) {
    const test::handle_ledger ledger(GetModuleHandleW(nullptr));
    EXPECT_TRUE(with(TRUE, FILE_ATTRIBUTE_REPARSE_POINT, 0x51));
    EXPECT_FALSE(with(FALSE, 0, 0));
    EXPECT_EQ(ledger.made_by("CreateFileW"), 2);
    EXPECT_THAT(ledger.outstanding(), testing::IsEmpty());
}

TEST_F(TrackedFile, file_is_opened_for_its_attributes_alone_and_not_followed) {
    static DWORD access;
    static DWORD share;
    static DWORD disposition;
    static DWORD flags;
    const import_patch<decltype(CreateFileW)> patch(
        GetModuleHandleW(nullptr), "kernel32.dll", "CreateFileW",
        [](LPCWSTR, DWORD asked_access, DWORD asked_share, LPSECURITY_ATTRIBUTES, DWORD asked_disposition,
           DWORD asked_flags, HANDLE) -> HANDLE {
            access = asked_access;
            share = asked_share;
            disposition = asked_disposition;
            flags = asked_flags;
            return INVALID_HANDLE_VALUE;
        });
    EXPECT_FALSE(is_tracked_file(L"C:\\any"));
    EXPECT_EQ(access, 0x80U);
    EXPECT_EQ(share, 7U);
    EXPECT_EQ(disposition, static_cast<DWORD>(OPEN_EXISTING));
    EXPECT_EQ(flags, 0x200000U);
}

}  // namespace
}  // namespace ov::shell
