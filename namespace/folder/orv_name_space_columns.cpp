// The folder's columns.

#include <windows.h>
#include <shlobj.h>

#include <exception>

#include "namespace/folder/columns.h"
#include "namespace/folder/orv_name_space.h"
#include "namespace/folder/task_text.h"
#include "ovufc/com/guard.h"

namespace ov::name_space {

namespace {

// One more than there are: a view that asks about a third column is told that it is there by default, and
// then gets neither a key nor a header for it. Kept on purpose.
constexpr UINT columns_with_state = 3;

}  // namespace

STDMETHODIMP
orvNameSpace::GetDefaultColumn(DWORD, ULONG* sort, ULONG* display) noexcept {
    if (sort == nullptr || display == nullptr) {
        return E_POINTER;
    }
    *sort = columns::name;
    *display = columns::name;
    return S_OK;
}

STDMETHODIMP
orvNameSpace::GetDefaultColumnState(UINT column, SHCOLSTATEF* state) noexcept {
    if (column >= columns_with_state) {
        return E_INVALIDARG;
    }
    if (state == nullptr) {
        return E_POINTER;
    }
    *state = SHCOLSTATE_TYPE_STR | SHCOLSTATE_ONBYDEFAULT;
    return S_OK;
}

STDMETHODIMP
orvNameSpace::GetDetailsEx(PCUITEMID_CHILD entry, const SHCOLUMNID* key, VARIANT* value) noexcept {
    if (key == nullptr || value == nullptr) {
        return E_POINTER;
    }
    *value = VARIANT{};
    try {
        *value = column_value(entry, *key);
    } catch (const std::exception&) {
        // Out of memory: the value is empty, as for a property that the item does not have. Asking for a
        // property never fails.
    }
    return S_OK;
}

STDMETHODIMP
orvNameSpace::GetDetailsOf(PCUITEMID_CHILD entry, UINT column, SHELLDETAILS* details) noexcept {
    if (details == nullptr) {
        return E_POINTER;
    }
    SHCOLUMNID key;
    const HRESULT mapped = MapColumnToSCID(column, &key);
    details->cxChar = columns::width_chars;
    if (FAILED(mapped)) {
        return mapped;
    }
    return com::guarded([&] {
        // The details are packed: what stands in them need not be aligned as a text of its own is.
        STRRET text{};
        if (entry == nullptr) {
            details->fmt = LVCFMT_LEFT;
        }
        const HRESULT put =
            put_text(entry == nullptr ? column_header(column) : column_text(entry, key), text);
        if (SUCCEEDED(put)) {
            details->str = text;
        }
        return put;
    });
}

STDMETHODIMP
orvNameSpace::MapColumnToSCID(UINT column, SHCOLUMNID* key) noexcept {
    const PROPERTYKEY* const known = column_key(column);
    if (known == nullptr) {
        return E_FAIL;
    }
    if (key == nullptr) {
        return E_POINTER;
    }
    *key = *known;
    return S_OK;
}

}  // namespace ov::name_space
