#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <string>
#include <vector>

#include "ovufc/com/task_memory.h"

namespace ov::shellhost {

/// The product's namespace folder, as the desktop holds it.
struct namespace_root {
    Microsoft::WRL::ComPtr<IShellFolder2> folder;
    com::unique_absolute_id_list list;
};

/// Creates the folder and tells it where it is. Throws command_failure when its class cannot be created.
[[nodiscard]] namespace_root open_namespace_root();

/// The absolute id list of the folder, "::{class id}" below the desktop; null when the shell refuses it.
[[nodiscard]] com::unique_absolute_id_list list_of_namespace_root() noexcept;

/// The folder's items in the order in which it gives them out.
[[nodiscard]] std::vector<com::unique_child_id> items_of(IShellFolder* folder);

/// An item's type as the folder's item-type property tells it; 0xFFFF when it does not.
[[nodiscard]] std::uint16_t type_of(IShellFolder2* folder, PCUITEMID_CHILD item);

/// Types of the two items that are commands and not places.
inline constexpr std::uint16_t one_click_restore_type = 0x6060;
inline constexpr std::uint16_t addons_type = 0x7070;

}  // namespace ov::shellhost
