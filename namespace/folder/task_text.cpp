#include "namespace/folder/task_text.h"

#include <objbase.h>

#include <algorithm>

namespace ov::name_space {

HRESULT put_text(std::wstring_view text, STRRET& result) noexcept {
    auto* copy = static_cast<wchar_t*>(CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
    if (copy == nullptr) {
        return E_OUTOFMEMORY;
    }
    *std::copy(text.begin(), text.end(), copy) = L'\0';
    result.uType = STRRET_WSTR;
    result.pOleStr = copy;
    return S_OK;
}

}  // namespace ov::name_space
