#include "namespace/categories/name_space_category_provider_enum_obj.h"

#include "namespace/categories/type_categories.h"

namespace ov::name_space {

NameSpaceCategoryProviderEnumObj::~NameSpaceCategoryProviderEnumObj() = default;

STDMETHODIMP
NameSpaceCategoryProviderEnumObj::Next(ULONG count, GUID* guids, ULONG* fetched) noexcept {
    if (count != 1) {
        return E_INVALIDARG;
    }
    if (guids == nullptr) {
        return E_POINTER;
    }
    if (calls++ != 0) {
        return E_INVALIDARG;
    }
    *guids = type_category_guid;
    if (fetched != nullptr) {
        *fetched = 1;
    }
    return S_OK;
}

STDMETHODIMP
NameSpaceCategoryProviderEnumObj::Skip(ULONG count) noexcept {
    calls += count;
    return S_OK;
}

STDMETHODIMP
NameSpaceCategoryProviderEnumObj::Reset() noexcept {
    calls = 0;
    return S_OK;
}

STDMETHODIMP
NameSpaceCategoryProviderEnumObj::Clone(IEnumGUID** result) noexcept {
    if (result != nullptr) {
        *result = nullptr;
    }
    return E_NOTIMPL;
}

}  // namespace ov::name_space
