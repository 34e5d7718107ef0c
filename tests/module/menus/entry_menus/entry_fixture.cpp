#include "tests/module/menus/entry_menus/entry_fixture.h"

#include <gmock/gmock.h>

#include "ovufc/time/datetime.h"

namespace ov::test {

Microsoft::WRL::ComPtr<IContextMenu> entry_fixture::entry_menu(REFCLSID rclsid) const {
    auto menu = make_menu(rclsid);
    EXPECT_EQ(initialize(menu.Get(), selection_.Get()), S_OK);
    return menu;
}

std::wstring entry_fixture::display(std::uint64_t file_time) {
    return time::datetime_rfc1123(file_time).display(/*local=*/true, /*longDate=*/true);
}

void entry_fixture::expect_default_verb_alone(IContextMenu* menu, const wchar_t* text) {
    const queried_menu queried(menu, CMF_DEFAULTONLY);
    EXPECT_EQ(queried.result, 1);
    EXPECT_THAT(queried.added, testing::ElementsAre(menu_item{text, queried_menu::first_id}));
    const queried_menu right_click(menu, CMF_EXPLORE);
    EXPECT_EQ(right_click.result, 0);
    EXPECT_THAT(right_click.added, testing::IsEmpty());
    EXPECT_EQ(invoke(menu, 1), E_INVALIDARG);
    EXPECT_EQ(invoke(menu, 0x10000), E_INVALIDARG);
    EXPECT_EQ(menu->InvokeCommand(nullptr), E_INVALIDARG);
}

}  // namespace ov::test
