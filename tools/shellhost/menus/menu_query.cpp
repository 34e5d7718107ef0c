#include "tools/shellhost/menus/menu_query.h"

#include "tools/stand_ins/menus/menu_command.h"

namespace ov::shellhost {

queried_menu::queried_menu(Microsoft::WRL::ComPtr<IContextMenu> handlers, UINT flags)
    : handlers_(std::move(handlers)),
      menu_(CreatePopupMenu()),
      result_(handlers_->QueryContextMenu(menu_.get(), 0, first_id, stand_ins::last_command_id, flags)) {}

std::vector<menu_item> queried_menu::items() const {
    return read_menu(menu_.get(), first_id, handlers_.Get());
}

HRESULT queried_menu::invoke(UINT offset, HWND owner) const {
    return stand_ins::run_menu_command(*handlers_.Get(), offset, owner);
}

}  // namespace ov::shellhost
