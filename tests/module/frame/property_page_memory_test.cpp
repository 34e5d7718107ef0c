#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include "testkit/process/shipped_module.h"
#include "testkit/memory/memory_shortage.h"
#include "tests/module/frame/classes_under_test.h"

namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;

// The page is made by the class object of the file and folder menu, which has a road of its own for it.
TEST(OutOfMemoryForThePropertyPage, instance_is_refused_and_out_pointer_cleared) {
    const shipped_module module;
    {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(module.get_class_object(class_ids::shell_extension, IID_PPV_ARGS(&factory)), S_OK);
        void* made = untouched;
        {
            const memory_shortage shortage(module.handle());
            EXPECT_EQ(factory->CreateInstance(nullptr, IID_IShellPropSheetExt, &made), E_OUTOFMEMORY);
        }
        EXPECT_EQ(made, nullptr);
        ComPtr<IShellPropSheetExt> page;
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&page)), S_OK);
    }
    EXPECT_EQ(module.can_unload_now(), S_OK);
}

}  // namespace
}  // namespace ov::test
