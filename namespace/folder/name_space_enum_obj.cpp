#include "namespace/folder/name_space_enum_obj.h"

#include <utility>

#include "namespace/items/item_id.h"

namespace ov::name_space {

NameSpaceEnumObj::NameSpaceEnumObj(IShellFolder2* owner, SHCONTF wanted,
                                   std::vector<ItemData> item_copies) noexcept
    : flags(wanted), items(std::move(item_copies)), folder(owner) {}

NameSpaceEnumObj::~NameSpaceEnumObj() = default;

STDMETHODIMP
NameSpaceEnumObj::Next(ULONG count, PITEMID_CHILD* entries, ULONG* fetched) noexcept {
    const HRESULT nothing = count == 0 ? S_OK : S_FALSE;
    if (fetched == nullptr) {
        return nothing;
    }
    *fetched = 0;
    if (count != 1) {
        return nothing;
    }
    if (entries == nullptr) {
        return E_POINTER;
    }
    if (position >= items.size()) {
        return S_FALSE;
    }
    com::unique_child_id entry = make_item_id(items[position]);
    if (entry == nullptr) {
        return S_FALSE;
    }
    ++position;
    *entries = entry.release();
    *fetched = 1;
    return S_OK;
}

STDMETHODIMP
NameSpaceEnumObj::Skip(ULONG count) noexcept {
    position += count;
    return S_OK;
}

STDMETHODIMP
NameSpaceEnumObj::Reset() noexcept {
    position = 0;
    return S_OK;
}

STDMETHODIMP
NameSpaceEnumObj::Clone(IEnumIDList** result) noexcept {
    if (result != nullptr) {
        *result = nullptr;
    }
    return E_NOTIMPL;
}

}  // namespace ov::name_space
