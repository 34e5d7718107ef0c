// Making the folder, the driver's flags, and its place in the shell (IPersistFolder2).

#include "namespace/folder/orv_name_space.h"

#include <shlguid.h>
#include <shlobj.h>
#include <versionhelpers.h>

#include <utility>

#include "module/state/class_ids.h"
#include "ovufc/com/guard.h"
#include "ovufc/ipc/drvport/client.h"
#include "ovufc/win/srw_lock.h"

namespace ov::name_space {

orvNameSpace::orvNameSpace() : isServer(IsWindowsServer()) {
    build_items();
}

orvNameSpace::~orvNameSpace() = default;

void orvNameSpace::read_flags() noexcept {
    const std::uint32_t flags = ipc::drvport::flags();
    uiRestricted = (flags & ORV_FLAG_UI_RESTRICTED) != 0;
    showRestore = (flags & ORV_FLAG_RESTORE_HIDDEN) == 0;
    showAddons = (flags & ORV_FLAG_ADDONS_SHOWN) != 0;
    detailsView = (flags & ORV_FLAG_DETAILS_VIEW) != 0;
    exportsAvailable = (flags & ORV_FLAG_EXPORTS_AVAILABLE) != 0;
}

STDMETHODIMP
orvNameSpace::GetClassID(CLSID* clsid) noexcept {
    if (clsid == nullptr) {
        return E_POINTER;
    }
    *clsid = class_ids::namespace_folder;
    return S_OK;
}

STDMETHODIMP
orvNameSpace::Initialize(PCIDLIST_ABSOLUTE id_list) noexcept {
    com::unique_absolute_id_list clone(id_list != nullptr ? ILCloneFull(id_list) : nullptr);
    if (clone == nullptr) {
        return E_FAIL;
    }
    const HRESULT kept = com::guarded([&] {
        const win::exclusive_lock lock(givenListsLock);
        givenIdLists.push_back(std::move(clone));
        folderIdList = givenIdLists.back().get();
        return S_OK;
    });
    return SUCCEEDED(kept) ? S_OK : E_FAIL;
}

STDMETHODIMP
orvNameSpace::GetCurFolder(PIDLIST_ABSOLUTE* result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    const PCIDLIST_ABSOLUTE location = folderIdList;
    if (location == nullptr) {
        return E_FAIL;
    }
    *result = ILCloneFull(location);
    return *result != nullptr ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP
orvNameSpace::GetPaneState(REFEXPLORERPANE pane, EXPLORERPANESTATE* state) noexcept {
    if (pane == EP_Ribbon) {
        if (state == nullptr) {
            return E_POINTER;
        }
        *state = EPS_DEFAULT_ON | EPS_FORCE;
    }
    return S_OK;
}

}  // namespace ov::name_space
