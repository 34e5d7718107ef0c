#include "tools/shellhost/menus/file_selection.h"

#include <gtest/gtest.h>
#include <ole2.h>
#include <shellapi.h>

#include "testkit/files/temp_folder.h"
#include "tools/shellhost/apartment.h"
#include "tools/shellhost/command_failure.h"

namespace ov::shellhost {
namespace {

UINT dropped_files(IDataObject* data) {
    FORMATETC format{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium{};
    if (data->GetData(&format, &medium) != S_OK) {
        return 0;
    }
    const UINT count = DragQueryFileW(static_cast<HDROP>(medium.hGlobal), 0xFFFFFFFF, nullptr, 0);
    ReleaseStgMedium(&medium);
    return count;
}

TEST(FileSelection, files_of_one_folder_are_one_data_object) {
    const apartment com;
    const test::temp_folder folder;
    const auto selection = select_files({folder.make_file(L"a.txt"), folder.make_folder(L"b")});
    EXPECT_EQ(selection.ids.items.size(), 2U);
    EXPECT_EQ(dropped_files(selection.data.Get()), 2U);
}

TEST(FileSelection, files_of_two_folders_are_refused) {
    const apartment com;
    const test::temp_folder folder;
    const test::temp_folder other;
    EXPECT_THROW((void)select_files({folder.make_file(L"a.txt"), other.make_file(L"a.txt")}),
                 command_failure);
}

TEST(FileSelection, missing_file_is_refused) {
    const apartment com;
    const test::temp_folder folder;
    EXPECT_THROW((void)select_files({folder.path() + L"\\missing"}), command_failure);
}

TEST(FileSelection, backslash_at_the_end_is_no_matter) {
    const apartment com;
    const test::temp_folder folder;
    EXPECT_EQ(select_files({folder.path() + L"\\"}).paths.front(), folder.path());
}

}  // namespace
}  // namespace ov::shellhost
