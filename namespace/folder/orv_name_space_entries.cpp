// What the shell asks about the entries: finding one by its name, listing, opening, attributes and names; and
// searches, of which the folder has none.

#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <string_view>

#include "namespace/folder/name_space_enum_obj.h"
#include "namespace/folder/orv_name_space.h"
#include "namespace/folder/task_text.h"
#include "namespace/items/display_name.h"
#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"
#include "ovufc/com/guard.h"
#include "ovufc/win/srw_lock.h"

namespace ov::name_space {

namespace {

using Microsoft::WRL::ComPtr;

bool same_name(std::wstring_view a, std::wstring_view b) noexcept {
    return a.size() == b.size() && CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                                        static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

// What follows the first entry of a list that has one; null when nothing does.
PCUIDLIST_RELATIVE rest_of(PCUIDLIST_RELATIVE id_list) noexcept {
    PCUIDLIST_RELATIVE rest = ILNext(id_list);
    return ILIsEmpty(rest) ? nullptr : rest;
}

}  // namespace

STDMETHODIMP
orvNameSpace::ParseDisplayName(HWND, IBindCtx*, LPWSTR name, ULONG* eaten, PIDLIST_RELATIVE* id_list,
                               ULONG* attributes) noexcept {
    if (id_list == nullptr) {
        return E_POINTER;
    }
    *id_list = nullptr;
    if (name == nullptr) {
        return E_INVALIDARG;
    }
    const std::wstring_view wanted(name);
    const win::shared_lock lock(itemsLock);
    const auto found = std::find_if(items.begin(), items.end(), [=](const ItemData& item) {
        return same_name(item.name.view(), wanted);
    });
    if (found == items.end()) {
        return E_INVALIDARG;
    }
    *id_list = make_item_id(*found).release();
    if (*id_list == nullptr) {
        return E_OUTOFMEMORY;
    }
    if (eaten != nullptr) {
        *eaten = static_cast<ULONG>(wanted.size());
    }
    if (attributes != nullptr) {
        *attributes &= item_type(found->type).parsed_attributes;
    }
    return S_OK;
}

STDMETHODIMP
orvNameSpace::GetDefaultSearchGUID(GUID*) noexcept {
    return E_NOTIMPL;
}

STDMETHODIMP
orvNameSpace::EnumSearches(IEnumExtraSearch** result) noexcept {
    if (result != nullptr) {
        *result = nullptr;
    }
    return E_NOINTERFACE;
}

STDMETHODIMP
orvNameSpace::EnumObjects(HWND, SHCONTF wanted, IEnumIDList** enumerator) noexcept {
    if (enumerator == nullptr) {
        return E_POINTER;
    }
    *enumerator = nullptr;
    return com::guarded([&] {
        std::vector<ItemData> copies;
        {
            const win::shared_lock lock(itemsLock);
            copies = items;
        }
        *enumerator = com::make_object<NameSpaceEnumObj>(this, wanted, std::move(copies));
        return *enumerator != nullptr ? S_OK : E_OUTOFMEMORY;
    });
}

STDMETHODIMP
orvNameSpace::BindToObject(PCUIDLIST_RELATIVE id_list, IBindCtx* bind_context, REFIID riid,
                           void** result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (!item_type(item_type_of(id_list)).browsable) {
        return E_NOTIMPL;
    }
    return com::guarded([&]() -> HRESULT {
        const std::wstring path = item_name_of(id_list);
        if (path.empty()) {
            return E_NOTIMPL;
        }
        com::unique_absolute_id_list location(ILCreateFromPathW(path.c_str()));
        if (location == nullptr) {
            return E_OUTOFMEMORY;
        }
        ComPtr<IShellFolder> desktop;
        const HRESULT found = SHGetDesktopFolder(&desktop);
        if (FAILED(found)) {
            return found;
        }
        if (const auto rest = rest_of(id_list)) {
            location.reset(ILCombine(location.get(), rest));
            if (location == nullptr) {
                return E_OUTOFMEMORY;
            }
        }
        return desktop->BindToObject(location.get(), bind_context, riid, result);
    });
}

STDMETHODIMP
orvNameSpace::BindToStorage(PCUIDLIST_RELATIVE id_list, IBindCtx* bind_context, REFIID riid,
                            void** result) noexcept {
    return BindToObject(id_list, bind_context, riid, result);
}

STDMETHODIMP
orvNameSpace::CompareIDs(LPARAM, PCUIDLIST_RELATIVE, PCUIDLIST_RELATIVE) noexcept {
    return MAKE_HRESULT(SEVERITY_SUCCESS, 0, 0);
}

STDMETHODIMP
orvNameSpace::GetAttributesOf(UINT count, PCUITEMID_CHILD_ARRAY entries, SFGAOF* in_out) noexcept {
    if (count != 1) {
        return E_INVALIDARG;
    }
    if (entries == nullptr || in_out == nullptr) {
        return E_POINTER;
    }
    *in_out &= item_type(item_type_of(entries[0])).attributes;
    return S_OK;
}

STDMETHODIMP
orvNameSpace::GetDisplayNameOf(PCUITEMID_CHILD entry, SHGDNF flags, STRRET* result) noexcept {
    if (result == nullptr) {
        return E_POINTER;
    }
    return com::guarded([&] {
        const bool for_parsing = (flags & SHGDN_FORPARSING) != 0 && (flags & SHGDN_INFOLDER) == 0;
        const std::wstring name = for_parsing ? item_name_of(entry) : display_name_of(entry);
        return name.empty() ? E_INVALIDARG : put_text(name, *result);
    });
}

STDMETHODIMP
orvNameSpace::SetNameOf(HWND, PCUITEMID_CHILD, LPCWSTR, SHGDNF, PITEMID_CHILD* result) noexcept {
    if (result != nullptr) {
        *result = nullptr;
    }
    return E_NOTIMPL;
}

}  // namespace ov::name_space
