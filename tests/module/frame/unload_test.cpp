#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include "testkit/process/shipped_module.h"
#include "tests/module/frame/classes_under_test.h"
#include "tests/module/frame/left_behind.h"

using Microsoft::WRL::ComPtr;

namespace ov::test {
namespace {

TEST(Unload, fresh_module_may_go) {
    const shipped_module module;
    EXPECT_EQ(module.can_unload_now(), S_OK);
}

TEST(Unload, live_class_object_keeps_the_module) {
    const shipped_module module;
    for (const auto& row : classes_under_test) {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(module.get_class_object(row.id, IID_PPV_ARGS(&factory)), S_OK);
        EXPECT_EQ(module.can_unload_now(), S_FALSE) << row.name;
        factory.Reset();
        EXPECT_EQ(module.can_unload_now(), S_OK) << row.name;
    }
}

TEST(Unload, live_object_keeps_the_module) {
    const shipped_module module;
    for (const auto& row : classes_under_test) {
        ComPtr<IUnknown> made;
        ASSERT_EQ(
            module.create(row.id, row.instance_interface, reinterpret_cast<void**>(made.GetAddressOf())),
            S_OK);
        EXPECT_EQ(module.can_unload_now(), S_FALSE) << row.name;
        made.Reset();
        EXPECT_EQ(module.can_unload_now(), S_OK) << row.name;
    }
}

TEST(Unload, live_property_page_does_not_keep_the_module) {
    const shipped_module module;
    ComPtr<IShellPropSheetExt> page;
    ASSERT_EQ(module.create(class_ids::shell_extension, IID_PPV_ARGS(&page)), S_OK);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(module.can_unload_now(), S_OK);
}

TEST(Unload, locked_and_released_class_object_keeps_the_module_for_good) {
    // The object that is left over keeps its count: a module of its own, so that no other test sees it.
    const std::wstring copy = program_directory() + L"orvshellext_locked.dll";
    ASSERT_TRUE(CopyFileW((program_directory() + L"orvshellext.dll").c_str(), copy.c_str(), FALSE));
    {
        const shipped_module module(copy);
        IClassFactory* factory = nullptr;
        ASSERT_EQ(module.get_class_object(class_ids::shell_extension, IID_PPV_ARGS(&factory)), S_OK);
        EXPECT_EQ(factory->LockServer(TRUE), 1);
        EXPECT_EQ(factory->Release(), 0U);
        EXPECT_EQ(module.can_unload_now(), S_FALSE);
        EXPECT_EQ(factory->LockServer(FALSE), 0);
        EXPECT_EQ(module.can_unload_now(), S_FALSE);
        // One more Release on a count that is 0 already, now that the lock is gone, frees it.
        EXPECT_EQ(factory->Release(), 0U);
        EXPECT_EQ(module.can_unload_now(), S_OK);
    }
    EXPECT_TRUE(DeleteFileW(copy.c_str()));
}

TEST(Unload, loads_that_open_the_port_cost_the_host_nothing) {
    // The folder's class object asks the driver: device, section and semaphore come with each load.
    const auto use = [](const shipped_module& module) {
        ComPtr<IShellFolder> folder;
        ASSERT_EQ(module.create(class_ids::namespace_folder, IID_PPV_ARGS(&folder)), S_OK);
    };
    EXPECT_THAT(left_behind_by(200, use), testing::IsEmpty());
}

}  // namespace
}  // namespace ov::test
