#include "tools/shellhost/menus/menu_sources.h"

#include "module/state/class_ids.h"
#include "tools/stand_ins/menus/handler_sources.h"

namespace ov::shellhost {

using stand_ins::menu_source;

std::vector<menu_source> system_menu(const file_selection& selection) {
    menu_source source;
    source.name = L"of the system";
    source.serves_default = true;
    source.open = [&selection](IContextMenu** menu) -> HRESULT {
        const auto children = selection.ids.children();
        const HRESULT result =
            selection.folder->GetUIObjectOf(nullptr, static_cast<UINT>(children.size()), children.data(),
                                            __uuidof(IContextMenu), nullptr, reinterpret_cast<void**>(menu));
        return SUCCEEDED(result) && *menu == nullptr ? E_NOINTERFACE : result;
    };
    return {source};
}

std::vector<menu_source> registered_handlers(const file_selection& selection) {
    return stand_ins::sources_of_handlers(stand_ins::class_keys_of_path(selection.paths.front()),
                                          selection.ids.folder.get(), selection.data.Get());
}

menu_source unregistered_handler(const file_selection& selection) {
    const stand_ins::registered_handler handler{L"Orvane Vaultkeep", class_ids::shell_extension, false};
    menu_source source;
    source.name = handler.name + L" (not registered)";
    source.open = [handler, &selection](IContextMenu** menu) {
        return stand_ins::open_handler(handler, selection.ids.folder.get(), selection.data.Get(), nullptr,
                                       menu);
    };
    return source;
}

}  // namespace ov::shellhost
