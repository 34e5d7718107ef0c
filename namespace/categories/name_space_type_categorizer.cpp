#include "namespace/categories/name_space_type_categorizer.h"

#include <oleauto.h>

#include <algorithm>
#include <string>

#include "module/state/module_state.h"
#include "namespace/categories/type_categories.h"
#include "namespace/folder/columns.h"
#include "namespace/items/item_types.h"
#include "ovufc/com/guard.h"
#include "ovufc/i18n/message_ids.h"

namespace ov::name_space {

namespace {

// 260 bytes, not characters: half of the record's name field, on purpose.
constexpr std::size_t name_limit_chars = 260 / sizeof(wchar_t);

}  // namespace

NameSpaceTypeCategorizer::NameSpaceTypeCategorizer(IShellFolder2* owner) noexcept : folder(owner) {}

NameSpaceTypeCategorizer::~NameSpaceTypeCategorizer() = default;

STDMETHODIMP
NameSpaceTypeCategorizer::GetDescription(LPWSTR text, UINT capacity_chars) noexcept {
    if (text == nullptr) {
        return E_POINTER;
    }
    return com::guarded([&] {
        const std::wstring description =
            module_state::resource_strings.lookup(i18n::message_ids::grouping_description);
        std::copy_n(description.data(), std::min<std::size_t>(description.size(), capacity_chars), text);
        return S_OK;
    });
}

STDMETHODIMP
NameSpaceTypeCategorizer::GetCategory(UINT count, PCUITEMID_CHILD_ARRAY entries, DWORD* ids) noexcept {
    if (count != 0 && (entries == nullptr || ids == nullptr)) {
        return E_POINTER;
    }
    for (UINT i = 0; i < count; ++i) {
        VARIANT value;
        VariantInit(&value);
        const HRESULT result = folder->GetDetailsEx(entries[i], &item_type_key, &value);
        if (FAILED(result)) {
            return result;
        }
        ids[i] = item_type(value.uiVal).category;
        VariantClear(&value);
    }
    return S_OK;
}

STDMETHODIMP
NameSpaceTypeCategorizer::GetCategoryInfo(DWORD id, CATEGORY_INFO* info) noexcept {
    if (!is_type_category(id)) {
        return S_OK;
    }
    if (info == nullptr) {
        return E_POINTER;
    }
    return com::guarded([&] {
        const std::wstring name = type_category_name(id);
        std::copy_n(name.data(), std::min(name.size(), name_limit_chars), info->wszName);
        return S_OK;
    });
}

STDMETHODIMP
NameSpaceTypeCategorizer::CompareCategory(CATSORT_FLAGS, DWORD id1, DWORD id2) noexcept {
    return MAKE_HRESULT(SEVERITY_SUCCESS, 0, static_cast<WORD>(id1 - id2));
}

}  // namespace ov::name_space
