#include "tools/wine_window/view_dressing.h"

#include <commctrl.h>
#include <wrl/client.h>

#include "tools/wine_window/menus/view_menus.h"
#include "tools/wine_window/view_order.h"

namespace ov::wine_window {

void complete_view(IFolderView* view, IUnknown* site) noexcept {
    Microsoft::WRL::ComPtr<IShellView> shell_view;
    HWND window = nullptr;
    if (FAILED(view->QueryInterface(IID_PPV_ARGS(shell_view.GetAddressOf()))) ||
        FAILED(shell_view->GetWindow(&window))) {
        return;
    }
    attach_view_menus(shell_view.Get(), window, site);
    if (const HWND list = FindWindowExW(window, nullptr, WC_LISTVIEWW, nullptr); list != nullptr) {
        keep_folder_order(view, list);
    }
}

}  // namespace ov::wine_window
