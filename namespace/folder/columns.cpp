#include "namespace/folder/columns.h"

#include <oleauto.h>

#include <new>

#include "module/state/module_state.h"
#include "namespace/categories/type_categories.h"
#include "namespace/items/display_name.h"
#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"
#include "ovufc/i18n/message_ids.h"

namespace ov::name_space {

const PROPERTYKEY* column_key(UINT column) noexcept {
    switch (column) {
        case columns::name:
            return &item_name_key;
        case columns::type:
            return &item_type_key;
        default:
            return nullptr;
    }
}

std::wstring column_header(UINT column) {
    switch (column) {
        case columns::name:
            return module_state::resource_strings.lookup(i18n::message_ids::column_name);
        case columns::type:
            return module_state::resource_strings.lookup(i18n::message_ids::column_type);
        default:
            return {};
    }
}

std::wstring column_text(PCUITEMID_CHILD entry, const PROPERTYKEY& key) {
    if (key == item_name_key) {
        return display_name_of(entry);
    }
    if (key == item_type_key) {
        return type_category_name(item_type(item_type_of(entry)).category);
    }
    return {};
}

VARIANT column_value(PCUITEMID_CHILD entry, const PROPERTYKEY& key) {
    VARIANT value{};  // VT_EMPTY
    if (key == item_name_key) {
        const std::wstring text = display_name_of(entry);
        value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (value.bstrVal == nullptr) {
            throw std::bad_alloc();
        }
        value.vt = VT_BSTR;
    } else if (key == item_type_key) {
        value.uiVal = item_type_of(entry);
        value.vt = VT_UI2;
    }
    return value;
}

}  // namespace ov::name_space
