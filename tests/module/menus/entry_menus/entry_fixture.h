#pragma once

#include <cstdint>
#include <string>

#include "tests/module/menus/menus_fixture.h"

namespace ov::test {

/// The two special entries of the namespace folder, selected as the folder's own data object selects them.
class entry_fixture : public menus_fixture {
  protected:
    /// A menu of the class on a selected item.
    Microsoft::WRL::ComPtr<IContextMenu> entry_menu(REFCLSID rclsid) const;

    /// Expects `text` as the default verb of `menu`, nothing on a right-click, and every other verb refused.
    static void expect_default_verb_alone(IContextMenu* menu, const wchar_t* text);

    /// How the module writes a file time for people.
    static std::wstring display(std::uint64_t file_time);

  private:
    Microsoft::WRL::ComPtr<data_object> selection_ = select_items({folder_.path()});
};

}  // namespace ov::test
