#pragma once

#include <windows.h>
#include <objidl.h>
#include <shtypes.h>

#include <vector>

#include "ovufc/com/task_memory.h"
#include "tools/stand_ins/items/global_memory.h"

namespace ov::stand_ins {

/// Some items of one folder: its absolute id list and the children's.
struct item_selection {
    com::unique_absolute_id_list folder;
    std::vector<com::unique_child_id> items;

    /// The children as shell functions want them; valid as long as the selection.
    [[nodiscard]] std::vector<PCUITEMID_CHILD> children() const;
};

/// The clipboard format number of CFSTR_SHELLIDLIST.
[[nodiscard]] CLIPFORMAT id_list_array_format() noexcept;

/// The content of CFSTR_SHELLIDLIST: a CIDA block with the folder's list first and the items' after it, as
/// "Shell Clipboard Formats" describes it. Null when there is no memory.
[[nodiscard]] unique_global make_id_list_array(PCIDLIST_ABSOLUTE folder, UINT count,
                                               PCUITEMID_CHILD_ARRAY items) noexcept;

/// Reads the selection out of a data object's CFSTR_SHELLIDLIST. Offsets that leave the block, or a block
/// without items, give E_INVALIDARG and leave `read` as it was.
[[nodiscard]] HRESULT read_selection(IDataObject* object, item_selection& read);

/// Clones `items`; an item that cannot be cloned throws std::bad_alloc.
[[nodiscard]] item_selection copy_selection(PCIDLIST_ABSOLUTE folder, UINT count,
                                            PCUITEMID_CHILD_ARRAY items);

}  // namespace ov::stand_ins
