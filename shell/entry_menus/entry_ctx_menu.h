#pragma once

#include <windows.h>
#include <ocidl.h>
#include <shlobj.h>
#include <wrl/client.h>

#include "module/state/module_state.h"
#include "ovufc/com/com_object.h"

namespace ov::shell {

/// What the menus of the namespace folder's two special entries share: the selection, the site, and one verb
/// that is the entry's default action only. It is not shown on a right-click menu, on purpose.
///
/// Keeps references to the selection and the site. For one thread at a time.
class EntryCtxMenu
    : public com::com_object<EntryCtxMenu, com::bases<IContextMenu, IShellExtInit, IObjectWithSite>,
                             com::answers<com::answer<IUnknown, IContextMenu>, com::answer<IContextMenu>,
                                          com::answer<IShellExtInit>, com::answer<IObjectWithSite>>,
                             &module_state::context_menu_object_count> {
  public:
    virtual ~EntryCtxMenu() = default;

    STDMETHODIMP
    Initialize(PCIDLIST_ABSOLUTE folder, IDataObject* selection, HKEY key) noexcept final;
    /// Adds the verb when only the default verb is asked for.
    STDMETHODIMP
    QueryContextMenu(HMENU menu, UINT indexMenu, UINT idCmdFirst, UINT idCmdLast, UINT flags) noexcept final;
    /// Runs the command, which blocks until it is over. S_OK whatever it did; E_INVALIDARG unless the verb is
    /// the offset 0.
    STDMETHODIMP
    InvokeCommand(CMINVOKECOMMANDINFO* info) noexcept final;
    STDMETHODIMP
    GetCommandString(UINT_PTR idCmd, UINT type, UINT* reserved, LPSTR buffer, UINT cch) noexcept final;
    STDMETHODIMP
    SetSite(IUnknown* new_site) noexcept final;
    STDMETHODIMP
    GetSite(REFIID riid, void** ppv) noexcept final;

  protected:
    EntryCtxMenu() noexcept = default;

  private:
    /// The verb's text. English in every language, like the other verbs of the module.
    [[nodiscard]] virtual const wchar_t* verb_text() const noexcept = 0;
    /// Runs the command on the selected entry. May throw.
    virtual void run() = 0;

    Microsoft::WRL::ComPtr<IDataObject> dataObject;
    Microsoft::WRL::ComPtr<IUnknown> site;
};

}  // namespace ov::shell
