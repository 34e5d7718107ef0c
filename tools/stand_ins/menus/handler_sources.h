#pragma once

#include <windows.h>
#include <objidl.h>
#include <shtypes.h>

#include <vector>

#include "tools/stand_ins/menus/merged_menu.h"
#include "tools/stand_ins/menus/registered_handlers.h"

namespace ov::stand_ins {

/// Menu sources for every handler registered under `class_keys`, each to be initialised with the selection
/// and the first of the keys. The folder's list is copied, the data object and the keys are kept.
[[nodiscard]] std::vector<menu_source> sources_of_handlers(std::vector<unique_registry_key> class_keys,
                                                           PCIDLIST_ABSOLUTE folder, IDataObject* selection);

}  // namespace ov::stand_ins
