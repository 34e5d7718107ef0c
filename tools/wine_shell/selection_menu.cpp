#include "tools/wine_shell/selection_menu.h"

#include <wrl/client.h>

#include "ovufc/com/guard.h"
#include "tools/wine_shell/handler_sources.h"
#include "tools/wine_shell/item_paths.h"
#include "tools/wine_shell/merged_menu.h"

namespace ov::wine_shell {

using Microsoft::WRL::ComPtr;

namespace {

std::vector<menu_source> sources_of(const ComPtr<IContextMenu>& own, const item_selection& selection,
                                    IDataObject* data) {
    std::vector<menu_source> sources;
    menu_source& system = sources.emplace_back();
    system.name = L"system";
    system.serves_default = true;
    system.leads = true;
    system.open = [own](IContextMenu** menu) { return own.CopyTo(menu); };
    const auto paths = file_system_paths(selection);
    if (!paths.empty()) {
        for (menu_source& source :
             sources_of_handlers(class_keys_of_path(paths.front()), selection.folder.get(), data)) {
            sources.push_back(std::move(source));
        }
    }
    return sources;
}

}  // namespace

bool has_handlers(IContextMenu* menu) noexcept {
    ComPtr<IMergedMenu> merged;
    return SUCCEEDED(menu->QueryInterface(IID_PPV_ARGS(merged.GetAddressOf())));
}

HRESULT make_selection_menu(HWND owner, IShellFolder* folder, const item_selection& selection,
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
        return make_merged_menu(sources_of(own, selection, data), IID_PPV_ARGS(menu));
    });
}

}  // namespace ov::wine_shell
