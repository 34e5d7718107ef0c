#include "tests/module/menus/entry_fixture.h"

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

}  // namespace ov::test
