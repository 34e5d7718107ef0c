#include "tools/shellhost/menus/menu_query.h"

#include <shellapi.h>

namespace ov::shellhost {

queried_menu::queried_menu(Microsoft::WRL::ComPtr<IContextMenu> handlers, UINT flags)
    : handlers_(std::move(handlers)),
      menu_(CreatePopupMenu()),
      result_(handlers_->QueryContextMenu(menu_.get(), 0, first_id, last_id, flags)) {}

std::vector<menu_item> queried_menu::items() const {
    return read_menu(menu_.get(), first_id, handlers_.Get());
}

HRESULT queried_menu::invoke(UINT offset, HWND owner) const {
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof info;
    info.fMask = CMIC_MASK_UNICODE;
    info.hwnd = owner;
    info.lpVerb = MAKEINTRESOURCEA(offset);
    info.lpVerbW = MAKEINTRESOURCEW(offset);
    info.nShow = SW_SHOWNORMAL;
    return handlers_->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
}

}  // namespace ov::shellhost
