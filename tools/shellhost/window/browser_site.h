#pragma once

#include <windows.h>
#include <servprov.h>
#include <shlguid.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include "ovufc/com/com_object.h"

namespace ov::shellhost {

/// The site that menus get: it leads their commands to the browser of the window, so that "Open" opens in
/// place. It holds the browser until it is told to forget it.
class browser_site final
    : public com::com_object<
          browser_site, com::bases<IServiceProvider>,
          com::answers<com::answer<IUnknown, IServiceProvider>, com::answer<IServiceProvider>>> {
  public:
    explicit browser_site(IUnknown* browser) : browser_(browser) {}
    virtual ~browser_site() = default;

    STDMETHODIMP
    QueryService(REFGUID service, REFIID riid, void** result) noexcept override {
        if (result == nullptr) {
            return E_POINTER;
        }
        *result = nullptr;
        const bool is_known = service == SID_STopLevelBrowser || service == SID_SShellBrowser;
        return is_known && browser_ != nullptr ? browser_->QueryInterface(riid, result) : E_NOINTERFACE;
    }

    void forget_browser() noexcept { browser_.Reset(); }

  private:
    Microsoft::WRL::ComPtr<IUnknown> browser_;
};

}  // namespace ov::shellhost
