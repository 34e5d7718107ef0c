#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include "testkit/memory/memory_shortage.h"
#include "tests/module/frame/classes_under_test.h"
#include "tests/module/frame/left_behind.h"

// A host may load and free the module each time that it shows a file dialog. These tests take long, and do
// without the device so that others can have it meanwhile.

using Microsoft::WRL::ComPtr;

namespace ov::test {
namespace {

// The texts are loaded, an object lives and dies, and the module throws.
void use(const shipped_module& module) {
    ComPtr<IContextMenu> menu;
    ASSERT_EQ(module.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)), S_OK);
    menu.Reset();
    const memory_shortage shortage(module.handle());
    void* made = nullptr;
    ASSERT_EQ(module.get_class_object(class_ids::addons, IID_IClassFactory, &made), E_OUTOFMEMORY);
}

TEST(Unload, thousands_of_loads_cost_the_host_nothing) {
    EXPECT_THAT(left_behind_by(5000, use), testing::IsEmpty());
}

template <class Leak>
void expect_seen(const char* kind, Leak leak) {
    EXPECT_THAT(left_behind_by(40, use, leak), testing::ElementsAre(testing::StartsWith(kind)));
}

TEST(Unload, leak_of_any_kind_is_seen) {
    expect_seen("TLS indexes", [] { (void)TlsAlloc(); });
    expect_seen("FLS indexes", [] { (void)FlsAlloc(nullptr); });
    expect_seen("handles", [] { (void)CreateEventW(nullptr, TRUE, FALSE, nullptr); });
    expect_seen("heap blocks", [] { (void)HeapAlloc(GetProcessHeap(), 0, 16); });
    expect_seen("private pages", [] { (void)VirtualAlloc(nullptr, 1, MEM_COMMIT, PAGE_READWRITE); });
}

}  // namespace
}  // namespace ov::test
