#pragma once

#include <vector>

#include "tools/shellhost/menus/file_selection.h"
#include "tools/stand_ins/menus/merged_menu.h"

namespace ov::shellhost {

// Where the menu of a selection comes from. The sources are used as long as the selection lives.

/// The menu that the selection's folder gives: the system's, with everything that is registered for it.
[[nodiscard]] std::vector<stand_ins::menu_source> system_menu(const file_selection& selection);

/// The handlers that the registry names for the selection's class, for a system whose menu lacks them.
[[nodiscard]] std::vector<stand_ins::menu_source> registered_handlers(const file_selection& selection);

/// The product's own handler, where no registration tells the system of it.
[[nodiscard]] stand_ins::menu_source unregistered_handler(const file_selection& selection);

}  // namespace ov::shellhost
