// What the shell shows for an item and does with it: menu, icon, associations, data object.

#include <windows.h>
#include <shlobj.h>
#include <shlwapi.h>

#include "namespace/folder/orv_name_space.h"
#include "namespace/item_objects/item_associations.h"
#include "namespace/item_objects/item_data_object.h"
#include "namespace/item_objects/item_icon.h"
#include "namespace/item_objects/item_menu.h"
#include "ovufc/com/guard.h"

namespace ov::name_space {

STDMETHODIMP
orvNameSpace::GetUIObjectOf(HWND owner, UINT count, PCUITEMID_CHILD_ARRAY entries, REFIID riid, UINT*,
                            void** result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (entries == nullptr && count != 0) {
        return E_INVALIDARG;
    }
    const PCUITEMID_CHILD first = count != 0 ? entries[0] : nullptr;
    return com::guarded([&]() -> HRESULT {
        if (riid == IID_IContextMenu) {
            return create_item_menu(*this, folderIdList, owner, count, entries, riid, result);
        }
        if (riid == IID_IExtractIconW) {
            return create_item_icon(first, riid, result);
        }
        if (riid == IID_IQueryAssociations) {
            return create_item_associations(first, riid, result);
        }
        if (riid == IID_IDataObject) {
            return create_item_data_object(folderIdList, count, entries, riid, result);
        }
        return E_NOINTERFACE;
    });
}

}  // namespace ov::name_space
