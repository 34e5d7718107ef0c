#include "tools/wine_window/menus/selection_menu.h"

#include <wrl/client.h>

#include "ovufc/com/guard.h"
#include "tools/stand_ins/items/item_paths.h"
#include "tools/stand_ins/menus/handler_sources.h"
#include "tools/stand_ins/menus/merged_menu.h"

namespace ov::wine_window {

using Microsoft::WRL::ComPtr;

namespace {

std::vector<stand_ins::menu_source> sources_of(const ComPtr<IContextMenu>& own,
                                               const stand_ins::item_selection& selection,
                                               IDataObject* data) {
    std::vector<stand_ins::menu_source> sources;
    stand_ins::menu_source& system = sources.emplace_back();
    system.name = L"system";
    system.serves_default = true;
    system.leads = true;
    system.open = [own](IContextMenu** menu) { return own.CopyTo(menu); };
    const auto paths = stand_ins::file_system_paths(selection);
    if (!paths.empty()) {
        for (stand_ins::menu_source& source : stand_ins::sources_of_handlers(
                 stand_ins::class_keys_of_path(paths.front()), selection.folder.get(), data)) {
            sources.push_back(std::move(source));
        }
    }
    return sources;
}

}  // namespace

bool has_handlers(IContextMenu* menu) noexcept {
    ComPtr<stand_ins::IMergedMenu> merged;
    return SUCCEEDED(menu->QueryInterface(IID_PPV_ARGS(merged.GetAddressOf())));
}

HRESULT make_selection_menu(HWND owner, IShellFolder* folder, const stand_ins::item_selection& selection,
                            IDataObject* data, IContextMenu** menu) noexcept {
    *menu = nullptr;
    return com::guarded([&]() -> HRESULT {
        const auto children = selection.children();
        ComPtr<IContextMenu> own;
        const HRESULT result = folder->GetUIObjectOf(owner, static_cast<UINT>(children.size()),
                                                     children.data(), __uuidof(IContextMenu), nullptr,
                                                     reinterpret_cast<void**>(own.GetAddressOf()));
        if (FAILED(result) || own == nullptr) {
            return FAILED(result) ? result : E_NOINTERFACE;
        }
        if (has_handlers(own.Get())) {
            *menu = own.Detach();
            return S_OK;
        }
        return stand_ins::make_merged_menu(sources_of(own, selection, data), IID_PPV_ARGS(menu));
    });
}

}  // namespace ov::wine_window
