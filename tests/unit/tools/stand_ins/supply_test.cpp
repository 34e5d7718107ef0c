#include "tools/stand_ins/supply.h"

#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>

#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tests/unit/tools/stand_ins/test_selection.h"
#include "testkit/files/temp_folder.h"
#include "tools/stand_ins/system.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

/// Called through this program's own import table, as the module calls them through its own.
HRESULT call_create_data_object(const test_selection& selection) {
    PCUITEMID_CHILD child = selection.item.get();
    ComPtr<IDataObject> made;
    return SHCreateDataObject(selection.parent.get(), 1, &child, nullptr, IID_PPV_ARGS(made.GetAddressOf()));
}

TEST(Supply, WhatWineLacks_WorksThroughTheImportTableAfterwards) {
    if (!system_is_wine()) {
        EXPECT_TRUE(supply_missing(GetModuleHandleW(nullptr)).empty());
        GTEST_SKIP() << "on Windows nothing is supplied";
    }
    const test_apartment apartment;
    const test::temp_folder folder;
    const test_selection selection(folder.path());
    ASSERT_EQ(call_create_data_object(selection), E_NOTIMPL)
        << "the system has it now: nothing need be supplied";

    const auto names = supply_missing(GetModuleHandleW(nullptr));
    EXPECT_NE(std::find(names.begin(), names.end(), "SHCreateDataObject"), names.end());
    EXPECT_EQ(std::find(names.begin(), names.end(), "AssocCreateForClasses"), names.end())
        << "this program does not import it";
    EXPECT_EQ(call_create_data_object(selection), S_OK);
    EXPECT_EQ(supply_missing(GetModuleHandleW(nullptr)), names);
}

TEST(Supply, ModuleThatImportsNoneOfThem_IsLeftAlone) {
    EXPECT_TRUE(supply_missing(GetModuleHandleW(L"kernel32.dll")).empty());
}

}  // namespace
}  // namespace ov::stand_ins
