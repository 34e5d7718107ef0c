#pragma once

#include <windows.h>
#include <shlobj.h>

#include <string>
#include <vector>

#include "ovufc/com/com_object.h"

#ifdef __MINGW32__
// The one interface here whose id mingw's headers do not attach to it.
__CRT_UUID_DECL(IExtractIconW, 0x000214fa, 0, 0, 0xc0, 0, 0, 0, 0, 0, 0, 0x46)
#endif

namespace ov::test {

class recording_icon;

using recording_icon_base =
    com::com_object<recording_icon, com::bases<IDefaultExtractIconInit, IExtractIconW>,
                    com::answers<com::answer<IUnknown, IExtractIconW>, com::answer<IExtractIconW>,
                                 com::answer<IDefaultExtractIconInit>>>;

/// The icon extractor that Wine does not have: notes in order what it is given.
class recording_icon final : public recording_icon_base {
  public:
    virtual ~recording_icon() = default;

    std::vector<std::wstring> calls;

    STDMETHODIMP
    SetFlags(UINT flags) noexcept override {
        calls.push_back(L"flags " + std::to_wstring(flags));
        return S_OK;
    }
    STDMETHODIMP
    SetNormalIcon(LPCWSTR file, int index) noexcept override {
        calls.push_back(L"icon " + std::wstring(file) + L" " + std::to_wstring(index));
        return S_OK;
    }
    STDMETHODIMP
    SetKey(HKEY) noexcept override { return other(); }
    STDMETHODIMP
    SetOpenIcon(LPCWSTR, int) noexcept override { return other(); }
    STDMETHODIMP
    SetShortcutIcon(LPCWSTR, int) noexcept override { return other(); }
    STDMETHODIMP
    SetDefaultIcon(LPCWSTR, int) noexcept override { return other(); }
    STDMETHODIMP
    GetIconLocation(UINT, LPWSTR, UINT, int*, UINT*) noexcept override { return other(); }
    STDMETHODIMP
    Extract(LPCWSTR, UINT, HICON*, HICON*, UINT) noexcept override { return other(); }

  private:
    HRESULT other() noexcept {
        calls.push_back(L"other");
        return E_NOTIMPL;
    }
};

}  // namespace ov::test
