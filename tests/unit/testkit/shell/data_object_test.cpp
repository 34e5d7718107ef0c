#include "testkit/shell/data_object.h"

#include <gtest/gtest.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shobjidl.h>

namespace ov::test {
namespace {

FORMATETC file_list_format() {
    return {CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

TEST(DataObject, paths_come_back_through_the_shells_own_reader) {
    const auto selection = select_paths({L"C:\\one", L"C:\\two"});
    FORMATETC format = file_list_format();
    STGMEDIUM medium{};
    ASSERT_EQ(selection->GetData(&format, &medium), S_OK);
    const auto drop = static_cast<HDROP>(medium.hGlobal);
    wchar_t path[MAX_PATH] = {};
    EXPECT_EQ(DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0), 2U);
    EXPECT_EQ(DragQueryFileW(drop, 1, path, MAX_PATH), 6U);
    EXPECT_STREQ(path, L"C:\\two");
    ReleaseStgMedium(&medium);
}

TEST(DataObject, narrow_list_is_read_too) {
    const auto selection = select_block(narrow_file_list({"C:\\one"}));
    FORMATETC format = file_list_format();
    STGMEDIUM medium{};
    ASSERT_EQ(selection->GetData(&format, &medium), S_OK);
    wchar_t path[MAX_PATH] = {};
    EXPECT_EQ(DragQueryFileW(static_cast<HDROP>(medium.hGlobal), 0, path, MAX_PATH), 6U);
    EXPECT_STREQ(path, L"C:\\one");
    ReleaseStgMedium(&medium);
}

TEST(DataObject, medium_that_is_out_is_seen_in_the_references) {
    const auto selection = select_paths({L"C:\\one"});
    FORMATETC format = file_list_format();
    STGMEDIUM medium{};
    ASSERT_EQ(selection->GetData(&format, &medium), S_OK);
    EXPECT_EQ(selection->references(), 2U);
    ReleaseStgMedium(&medium);
    EXPECT_EQ(selection->references(), 1U);
}

TEST(DataObject, lock_that_is_held_is_seen) {
    const auto selection = select_paths({L"C:\\one"});
    FORMATETC format = file_list_format();
    STGMEDIUM medium{};
    ASSERT_EQ(selection->GetData(&format, &medium), S_OK);
    GlobalLock(medium.hGlobal);
    EXPECT_EQ(selection->lock_count(), 1U);
    GlobalUnlock(medium.hGlobal);
    EXPECT_EQ(selection->lock_count(), 0U);
    ReleaseStgMedium(&medium);
}

TEST(DataObject, refusal_is_returned_as_it_is) {
    const auto selection = select_paths({L"C:\\one"});
    selection->answer = E_ACCESSDENIED;
    FORMATETC format = file_list_format();
    STGMEDIUM medium{};
    EXPECT_EQ(selection->GetData(&format, &medium), E_ACCESSDENIED);
    EXPECT_EQ(selection->references(), 1U);
}

TEST(DataObject, item_ids_make_the_shells_own_items) {
    const auto selection = select_items({L"C:\\windows"});
    Microsoft::WRL::ComPtr<IShellItemArray> items;
    ASSERT_EQ(SHCreateShellItemArrayFromDataObject(selection.Get(), IID_PPV_ARGS(&items)), S_OK);
    Microsoft::WRL::ComPtr<IShellItem> item;
    ASSERT_EQ(items->GetItemAt(0, &item), S_OK);
    wchar_t* path = nullptr;
    ASSERT_EQ(item->GetDisplayName(SIGDN_FILESYSPATH, &path), S_OK);
    EXPECT_EQ(_wcsicmp(path, L"C:\\windows"), 0);
    CoTaskMemFree(path);
}

TEST(DataObject, other_formats_are_not_there) {
    const auto selection = select_paths({L"C:\\one"});
    FORMATETC format = file_list_format();
    format.cfFormat = CF_UNICODETEXT;
    STGMEDIUM medium{};
    EXPECT_EQ(selection->GetData(&format, &medium), DV_E_FORMATETC);
}

}  // namespace
}  // namespace ov::test
