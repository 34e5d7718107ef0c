// The folder's view: the system's own, told to group by item type.

#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include "namespace/categories/name_space_category_provider.h"
#include "namespace/folder/columns.h"
#include "namespace/folder/orv_name_space.h"

namespace ov::name_space {

namespace {

using Microsoft::WRL::ComPtr;

#ifdef _WIN64
static_assert(sizeof(SFV_CREATE) == 32);  // goes into cbSize, which the system checks
#endif

}  // namespace

STDMETHODIMP
orvNameSpace::CreateViewObject(HWND, REFIID riid, void** result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (riid == __uuidof(IShellView)) {
        return create_view(reinterpret_cast<IShellView**>(result));
    }
    if (riid == __uuidof(ICategoryProvider)) {
        *result = static_cast<ICategoryProvider*>(com::make_object<NameSpaceCategoryProvider>(this));
        return *result != nullptr ? S_OK : E_OUTOFMEMORY;
    }
    return E_NOINTERFACE;
}

HRESULT orvNameSpace::create_view(IShellView** result) noexcept {
    ComPtr<IShellFolder> self;
    const HRESULT asked =
        QueryInterface(__uuidof(IShellFolder), reinterpret_cast<void**>(self.GetAddressOf()));
    if (FAILED(asked)) {
        return asked;
    }
    SFV_CREATE creation{};
    creation.cbSize = sizeof(creation);
    creation.pshf = self.Get();
    const HRESULT made = SHCreateShellFolderView(&creation, result);
    if (FAILED(made) || *result == nullptr) {
        return made;
    }
    ComPtr<IFolderView2> view;
    if (SUCCEEDED((*result)->QueryInterface(__uuidof(IFolderView2),
                                            reinterpret_cast<void**>(view.GetAddressOf())))) {
        // A view that cannot group still shows the items, in the order of the enumeration.
        (void)view->SetGroupBy(grouping_key, TRUE);
        (void)view->SetCurrentViewMode(detailsView ? FVM_DETAILS : FVM_ICON);
    }
    return made;
}

}  // namespace ov::name_space
