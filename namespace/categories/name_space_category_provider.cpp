#include "namespace/categories/name_space_category_provider.h"

#include <algorithm>
#include <string>

#include "module/state/module_state.h"
#include "namespace/categories/name_space_category_provider_enum_obj.h"
#include "namespace/categories/name_space_type_categorizer.h"
#include "namespace/categories/type_categories.h"
#include "namespace/folder/columns.h"
#include "ovufc/com/guard.h"
#include "ovufc/i18n/message_ids.h"

namespace ov::name_space {

NameSpaceCategoryProvider::NameSpaceCategoryProvider(IShellFolder2* owner) noexcept : folder(owner) {}

NameSpaceCategoryProvider::~NameSpaceCategoryProvider() = default;

STDMETHODIMP
NameSpaceCategoryProvider::CanCategorizeOnSCID(const SHCOLUMNID* key) noexcept {
    if (key == nullptr) {
        return E_INVALIDARG;
    }
    return *key == item_name_key || *key == item_type_key ? S_OK : S_FALSE;
}

STDMETHODIMP
NameSpaceCategoryProvider::GetDefaultCategory(GUID* guid, SHCOLUMNID*) noexcept {
    if (guid == nullptr) {
        return E_POINTER;
    }
    *guid = type_category_guid;
    return S_OK;
}

STDMETHODIMP
NameSpaceCategoryProvider::GetCategoryForSCID(const SHCOLUMNID* key, GUID* guid) noexcept {
    if (key == nullptr) {
        return E_INVALIDARG;
    }
    if (guid == nullptr) {
        return E_POINTER;
    }
    if (*key != item_name_key && key->fmtid != grouping_key.fmtid) {
        return E_INVALIDARG;
    }
    *guid = type_category_guid;
    return S_OK;
}

STDMETHODIMP
NameSpaceCategoryProvider::EnumCategories(IEnumGUID** result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = com::make_object<NameSpaceCategoryProviderEnumObj>();
    return *result != nullptr ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP
NameSpaceCategoryProvider::GetCategoryName(const GUID* guid, LPWSTR name, UINT capacity_chars) noexcept {
    if (guid == nullptr) {
        return E_POINTER;
    }
    return com::guarded([&] {
        const std::wstring text = module_state::resource_strings.lookup(i18n::message_ids::grouping_name);
        if (*guid != type_category_guid || capacity_chars < text.size()) {
            return E_FAIL;
        }
        if (name == nullptr) {
            return E_POINTER;
        }
        std::copy(text.begin(), text.end(), name);
        return S_OK;
    });
}

STDMETHODIMP
NameSpaceCategoryProvider::CreateCategory(const GUID* guid, REFIID riid, void** result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (riid != __uuidof(ICategorizer)) {
        return E_NOINTERFACE;
    }
    if (guid == nullptr || *guid != type_category_guid) {
        return E_INVALIDARG;
    }
    *result = static_cast<ICategorizer*>(com::make_object<NameSpaceTypeCategorizer>(folder.Get()));
    return *result != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace ov::name_space
