#include "tools/stand_ins/supply.h"

#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>

#include "recording_handler.h"
#include "test_selection.h"
#include "testkit/files/temp_folder.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

/// Called through this program's own import table, as the module calls them through its own.
HRESULT call_create_data_object(const test_selection& selection) {
    PCUITEMID_CHILD child = selection.item.get();
    ComPtr<IDataObject> made;
    return SHCreateDataObject(selection.parent.get(), 1, &child, nullptr, IID_PPV_ARGS(made.GetAddressOf()));
}

UINT WINAPI other_click_time() {
    return 42;
}

std::vector<std::string> supply_click_time(bool (*is_missing)() noexcept) {
    const std::array stand_ins = {
        stand_in{"GetDoubleClickTime", is_missing,
                 reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&other_click_time))}};
    return supply(GetModuleHandleW(nullptr), stand_ins);
}

[[gnu::noinline]] UINT click_time() {
    return GetDoubleClickTime();
}

TEST(Supply, function_that_the_system_has_is_not_replaced) {
    EXPECT_TRUE(supply_click_time([]() noexcept { return false; }).empty());
    EXPECT_NE(click_time(), 42U);
}

TEST(Supply, function_that_the_system_lacks_is_replaced_and_named) {
    EXPECT_EQ(supply_click_time([]() noexcept { return true; }),
              std::vector<std::string>{"GetDoubleClickTime"});
    EXPECT_EQ(click_time(), 42U);
}

TEST(Supply, what_wine_lacks_works_through_the_import_table_afterwards) {
    const test_apartment apartment;
    const test::temp_folder folder;
    const test_selection selection(folder.path());
    ASSERT_EQ(call_create_data_object(selection), E_NOTIMPL);

    const auto names = supply_missing(GetModuleHandleW(nullptr));
    EXPECT_NE(std::find(names.begin(), names.end(), "SHCreateDataObject"), names.end());
    EXPECT_EQ(std::find(names.begin(), names.end(), "AssocCreateForClasses"), names.end())
        << "this program does not import it";
    EXPECT_EQ(call_create_data_object(selection), S_OK);
    EXPECT_EQ(supply_missing(GetModuleHandleW(nullptr)), names);
}

TEST(Supply, module_that_imports_none_of_them_is_left_alone) {
    EXPECT_TRUE(supply_missing(GetModuleHandleW(L"kernel32.dll")).empty());
}

}  // namespace
}  // namespace ov::stand_ins
