#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <functional>

#include "ovufc/com/com_object.h"

namespace ov::shellhost {

/// Hands on what an explorer browser tells of its navigation. The receivers must outlive the browser's
/// registration of this object.
class browser_events final
    : public com::com_object<
          browser_events, com::bases<IExplorerBrowserEvents>,
          com::answers<com::answer<IUnknown, IExplorerBrowserEvents>, com::answer<IExplorerBrowserEvents>>> {
  public:
    browser_events(std::function<void()> pending, std::function<void(PCIDLIST_ABSOLUTE)> complete)
        : pending_(std::move(pending)), complete_(std::move(complete)) {}
    virtual ~browser_events() = default;

    STDMETHODIMP
    OnNavigationPending(PCIDLIST_ABSOLUTE /*place*/) noexcept override {
        pending_();
        return S_OK;
    }
    STDMETHODIMP
    OnViewCreated(IShellView* /*view*/) noexcept override { return S_OK; }
    STDMETHODIMP
    OnNavigationComplete(PCIDLIST_ABSOLUTE place) noexcept override {
        complete_(place);
        return S_OK;
    }
    STDMETHODIMP
    OnNavigationFailed(PCIDLIST_ABSOLUTE place) noexcept override {
        complete_(place);
        return S_OK;
    }

  private:
    std::function<void()> pending_;
    std::function<void(PCIDLIST_ABSOLUTE)> complete_;
};

}  // namespace ov::shellhost
