#include "tools/stand_ins/menus/open_folder_menu.h"

#include <ocidl.h>
#include <shellapi.h>
#include <shlguid.h>
#include <shlobj.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include "ovufc/com/com_object.h"
#include "ovufc/com/guard.h"
#include "ovufc/com/task_memory.h"
#include "tools/stand_ins/menus/menu_site.h"

namespace ov::stand_ins {

namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* item_text = L"&Open";
constexpr const char* verb = "open";

class open_folder_menu final
    : public com::com_object<open_folder_menu, com::bases<IContextMenu, IObjectWithSite>,
                             com::answers<com::answer<IUnknown, IContextMenu>, com::answer<IContextMenu>,
                                          com::answer<IObjectWithSite>>> {
  public:
    explicit open_folder_menu(PCIDLIST_ABSOLUTE target) : target_(ILCloneFull(target)) {}
    virtual ~open_folder_menu() = default;

    STDMETHODIMP
    QueryContextMenu(HMENU menu, UINT index, UINT first, UINT /*last*/, UINT /*flags*/) noexcept override {
        if (!InsertMenuW(menu, index, MF_BYPOSITION | MF_STRING, first, item_text)) {
            return HRESULT_FROM_WIN32(GetLastError());
        }
        SetMenuDefaultItem(menu, first, FALSE);
        return MAKE_HRESULT(SEVERITY_SUCCESS, 0, 1);
    }

    STDMETHODIMP
    InvokeCommand(CMINVOKECOMMANDINFO* info) noexcept override {
        if (info == nullptr) {
            return E_INVALIDARG;
        }
        const bool named = !IS_INTRESOURCE(info->lpVerb) && lstrcmpiA(info->lpVerb, verb) == 0;
        if (!named && info->lpVerb != MAKEINTRESOURCEA(0)) {
            return E_INVALIDARG;
        }
        return com::guarded([&] { return open(info->hwnd); });
    }

    STDMETHODIMP
    GetCommandString(UINT_PTR command, UINT type, UINT* /*reserved*/, LPSTR text,
                     UINT capacity) noexcept override {
        if (command != 0 || (type != GCS_VERBW && type != GCS_VERBA) || text == nullptr) {
            return E_INVALIDARG;
        }
        if (type == GCS_VERBA) {
            lstrcpynA(text, verb, static_cast<int>(capacity));
        } else {
            lstrcpynW(reinterpret_cast<LPWSTR>(text), L"open", static_cast<int>(capacity));
        }
        return S_OK;
    }

    STDMETHODIMP
    SetSite(IUnknown* site) noexcept override {
        site_ = site;
        return S_OK;
    }
    STDMETHODIMP
    GetSite(REFIID riid, void** result) noexcept override { return query_site(site_.Get(), riid, result); }

  private:
    HRESULT open(HWND owner) {
        ComPtr<IShellBrowser> browser;
        if (site_ != nullptr && SUCCEEDED(IUnknown_QueryService(site_.Get(), SID_STopLevelBrowser,
                                                                IID_PPV_ARGS(browser.GetAddressOf())))) {
            return browser->BrowseObject(target_.get(), SBSP_SAMEBROWSER | SBSP_ABSOLUTE);
        }
        SHELLEXECUTEINFOW execute{};
        execute.cbSize = sizeof execute;
        execute.fMask = SEE_MASK_IDLIST;
        execute.hwnd = owner;
        execute.lpVerb = L"open";
        execute.nShow = SW_SHOWNORMAL;
        execute.lpIDList = target_.get();
        return ShellExecuteExW(&execute) ? S_OK : HRESULT_FROM_WIN32(GetLastError());
    }

    com::unique_absolute_id_list target_;
    ComPtr<IUnknown> site_;
};

}  // namespace

HRESULT make_open_folder_menu(PCIDLIST_ABSOLUTE target, IContextMenu** menu) noexcept {
    *menu = nullptr;
    return com::guarded([&]() -> HRESULT {
        *menu = com::make_object<open_folder_menu>(target);
        return *menu != nullptr ? S_OK : E_OUTOFMEMORY;
    });
}

}  // namespace ov::stand_ins
