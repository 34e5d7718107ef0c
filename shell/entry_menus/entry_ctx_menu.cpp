#include "shell/entry_menus/entry_ctx_menu.h"

#include "ovufc/com/guard.h"
#include "shell/command_offset.h"
#include "shell/entry_menus/selected_entry.h"

namespace ov::shell {

STDMETHODIMP
EntryCtxMenu::Initialize(PCIDLIST_ABSOLUTE /*folder*/, IDataObject* selection, HKEY /*key*/) noexcept {
    dataObject = selection;
    return S_OK;
}

STDMETHODIMP
EntryCtxMenu::QueryContextMenu(HMENU menu, UINT indexMenu, UINT idCmdFirst, UINT /*idCmdLast*/,
                               UINT flags) noexcept {
    if ((flags & CMF_DEFAULTONLY) == 0) {
        return 0;
    }
    InsertMenuW(menu, indexMenu, MF_BYPOSITION, idCmdFirst, verb_text());
    return 1;
}

STDMETHODIMP
EntryCtxMenu::InvokeCommand(CMINVOKECOMMANDINFO* info) noexcept {
    if (command_offset(info) != 0) {
        return E_INVALIDARG;
    }
    // Errors are shown to the user here, or by the driver; the host is not told.
    (void)com::guarded([&] {
        selected_entry entry;
        if (entry.find(dataObject.Get())) {
            run();
        }
        return S_OK;
    });
    return S_OK;
}

STDMETHODIMP
EntryCtxMenu::GetCommandString(UINT_PTR /*idCmd*/, UINT /*type*/, UINT* /*reserved*/, LPSTR /*buffer*/,
                               UINT /*cch*/) noexcept {
    return E_NOTIMPL;
}

STDMETHODIMP
EntryCtxMenu::SetSite(IUnknown* new_site) noexcept {
    site = new_site;
    return S_OK;
}

STDMETHODIMP
EntryCtxMenu::GetSite(REFIID riid, void** ppv) noexcept {
    if (ppv == nullptr) {
        return E_POINTER;
    }
    *ppv = nullptr;
    return site == nullptr ? E_FAIL : site->QueryInterface(riid, ppv);
}

}  // namespace ov::shell
