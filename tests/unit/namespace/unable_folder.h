#pragma once

#include <windows.h>
#include <shobjidl.h>

namespace ov::test {

/// The operations of a shell folder that can do nothing: a test's own folder derives from this and overrides
/// the one that the test is about. `Base` is its com_object.
template <class Base>
class unable_folder : public Base {
  public:
    STDMETHODIMP
    ParseDisplayName(HWND, IBindCtx*, LPWSTR, ULONG*, PIDLIST_RELATIVE*, ULONG*) noexcept override {
        return E_NOTIMPL;
    }
    STDMETHODIMP
    EnumObjects(HWND, SHCONTF, IEnumIDList**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    BindToObject(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    BindToStorage(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    CompareIDs(LPARAM, PCUIDLIST_RELATIVE, PCUIDLIST_RELATIVE) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    CreateViewObject(HWND, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetAttributesOf(UINT, PCUITEMID_CHILD_ARRAY, SFGAOF*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetUIObjectOf(HWND, UINT, PCUITEMID_CHILD_ARRAY, REFIID, UINT*, void**) noexcept override {
        return E_NOTIMPL;
    }
    STDMETHODIMP
    GetDisplayNameOf(PCUITEMID_CHILD, SHGDNF, STRRET*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetNameOf(HWND, PCUITEMID_CHILD, LPCWSTR, SHGDNF, PITEMID_CHILD*) noexcept override { return E_NOTIMPL; }
};

}  // namespace ov::test
