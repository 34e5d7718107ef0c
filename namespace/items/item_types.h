#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <cstdint>

#include "namespace/categories/type_categories.h"

/// The one table of item types: what an item of each type is to the shell.
namespace ov::name_space {

namespace item_types {

/// Standard user folders, local folders and centrally managed folders.
inline constexpr std::uint16_t folder = 0x1010;
/// Reserved: no item has it.
inline constexpr std::uint16_t reserved = 0x2020;
/// Reserved, with an icon of its own: no item has it.
inline constexpr std::uint16_t reserved_with_icon = 0x3030;
inline constexpr std::uint16_t cloud_folder = 0x5050;
inline constexpr std::uint16_t one_click_restore = 0x6060;
inline constexpr std::uint16_t addons = 0x7070;

}  // namespace item_types

/// How an item's icon is found.
enum class icon_source {
    path,    // what the system shows for the item's path
    module,  // a resource of this module's own file
    system,  // shell32.dll
};

struct item_type_row {
    std::uint16_t type;
    /// Opens the real folder that the item names, and has that folder's attributes; else it has none.
    bool browsable;
    /// What GetAttributesOf leaves of the caller's mask.
    SFGAOF attributes;
    /// What ParseDisplayName leaves of it. The two differ on purpose.
    SFGAOF parsed_attributes;
    /// Where the registered handlers are found; null for none. A browsable item has the folder class as well.
    const wchar_t* prog_id;
    icon_source icon;
    int icon_index;
    /// Flags of the icon extractor (GIL_*).
    UINT icon_flags;
    std::uint32_t category;
};

/// The row of `type`; every type that is not in the table has the last one. The reference stays valid.
[[nodiscard]] const item_type_row& item_type(std::uint16_t type) noexcept;

}  // namespace ov::name_space
