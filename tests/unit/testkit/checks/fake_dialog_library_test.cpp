#include "testkit/checks/fake_dialog_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ov::test {
namespace {

using testing::ElementsAre;

TEST(FakeDialogLibrary, dialog_library_is_the_fake) {
    fake_dialog_library fake(GetModuleHandleW(nullptr));
    fake.protect = [](dialog::ProtectDialogRequest& request) { return request.flags + 1; };
    const HMODULE library = LoadLibraryExW(L"C:\\x\\orvdialog.dll", nullptr, 7);
    ASSERT_NE(library, nullptr);
    const auto show = reinterpret_cast<dialog::show_protect_dialog>(
        reinterpret_cast<void*>(GetProcAddress(library, MAKEINTRESOURCEA(17))));
    dialog::ProtectDialogRequest request{};
    request.flags = 4;
    EXPECT_EQ(show(&request), 5U);
    FreeLibrary(library);
    EXPECT_THAT(fake.events(), ElementsAre("load", "find 17", "show 17", "free"));
    EXPECT_EQ(fake.loads().front().path, L"C:\\x\\orvdialog.dll");
    EXPECT_EQ(fake.loads().front().flags, 7U);
}

TEST(FakeDialogLibrary, other_libraries_are_the_systems) {
    const fake_dialog_library fake(GetModuleHandleW(nullptr));
    const HMODULE library = LoadLibraryExW(L"kernel32.dll", nullptr, 0);
    EXPECT_EQ(library, GetModuleHandleW(L"kernel32.dll"));
    EXPECT_NE(GetProcAddress(library, "GetTickCount"), nullptr);
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_TRUE(fake.events().empty());
}

}  // namespace
}  // namespace ov::test
