#include "namespace/item_objects/item_associations.h"

#include <shellapi.h>
#include <shlwapi.h>

#include <array>

#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"

namespace ov::name_space {

HRESULT create_item_associations(PCUITEMID_CHILD entry, REFIID riid, void** result) noexcept {
    const item_type_row& type = item_type(item_type_of(entry));
    if (type.prog_id == nullptr) {
        return E_NOINTERFACE;
    }
    const std::array<ASSOCIATIONELEMENT, 2> elements{{
        {ASSOCCLASS_PROGID_STR, nullptr, type.prog_id},
        {ASSOCCLASS_FOLDER, nullptr, nullptr},
    }};
    return AssocCreateForClasses(elements.data(), type.browsable ? 2 : 1, riid, result);
}

}  // namespace ov::name_space
