#include "testkit/checks/handle_ledger.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace ov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(HandleLedger, handle_that_is_out_is_seen_until_it_is_given_back) {
    const handle_ledger ledger(GetModuleHandleW(nullptr));
    HDC dc = CreateCompatibleDC(nullptr);
    HMENU menu = CreateMenu();
    EXPECT_THAT(ledger.outstanding(), ElementsAre("CreateCompatibleDC", "CreateMenu"));
    DeleteDC(dc);
    EXPECT_THAT(ledger.outstanding(), ElementsAre("CreateMenu"));
    DestroyMenu(menu);
    EXPECT_THAT(ledger.outstanding(), IsEmpty());
    EXPECT_EQ(ledger.made_by("CreateMenu"), 1);
}

TEST(HandleLedger, both_bitmaps_of_an_icon_are_entered) {
    const handle_ledger ledger(GetModuleHandleW(nullptr));
    ICONINFO parts{};
    ASSERT_TRUE(GetIconInfo(LoadIconW(nullptr, IDI_APPLICATION), &parts));
    EXPECT_THAT(ledger.outstanding(), ElementsAre("GetIconInfo", "GetIconInfo"));
    DeleteObject(parts.hbmColor);
    DeleteObject(parts.hbmMask);
    EXPECT_THAT(ledger.outstanding(), IsEmpty());
}

TEST(HandleLedger, wrong_function_fails_the_test) {
    static handle_ledger* books = nullptr;
    handle_ledger ledger(GetModuleHandleW(nullptr));
    books = &ledger;
    EXPECT_NONFATAL_FAILURE(
        {
            HDC dc = GetDC(nullptr);
            books->note_closed(dc, "dc");
            ReleaseDC(nullptr, dc);
        },
        "given back by the wrong function");
}

}  // namespace
}  // namespace ov::test
