#pragma once

#include <windows.h>
#include <unknwn.h>

namespace ov::stand_ins {

/// What IObjectWithSite::GetSite answers for an object whose site is `site` (null when it has none).
[[nodiscard]] inline HRESULT query_site(IUnknown* site, REFIID riid, void** result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    return site != nullptr ? site->QueryInterface(riid, result) : E_FAIL;
}

}  // namespace ov::stand_ins
