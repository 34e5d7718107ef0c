#include "namespace/items/item_types.h"

#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <array>

#include "res/resource_ids.h"

namespace ov::name_space {

namespace {

constexpr SFGAOF real_folder = SFGAO_HASSUBFOLDER | SFGAO_FILESYSTEM | SFGAO_FOLDER | SFGAO_FILESYSANCESTOR |
                               SFGAO_STORAGEANCESTOR | SFGAO_STORAGE;
static_assert(real_folder == 0xF0800008);

constexpr SFGAOF parsed_folder = SFGAO_HASSUBFOLDER | SFGAO_FOLDER;
static_assert(parsed_folder == 0xA0000000);
constexpr SFGAOF parsed_other = SFGAO_HASSUBFOLDER;

constexpr const wchar_t* folder_prog_id = L"OrvaneFolderType";
constexpr const wchar_t* restore_prog_id = L"OrvaneRestoreType";
constexpr const wchar_t* addons_prog_id = L"OrvaneAddonsType";

// In shell32.dll: a folder without an icon of its own (4), and anything else (1).
constexpr int system_folder_icon = 4;
constexpr int system_other_icon = 1;

// A negative index names a resource by its number. The One Click Restore entry asks for elevation and shows
// so.
constexpr std::array<item_type_row, 6> rows{{
    {item_types::folder, true, real_folder, parsed_folder, folder_prog_id, icon_source::path,
     system_folder_icon, 0, type_categories::folders},
    {item_types::cloud_folder, true, real_folder, parsed_other, folder_prog_id, icon_source::path,
     system_folder_icon, 0, type_categories::cloud},
    {item_types::one_click_restore, false, 0, parsed_other, restore_prog_id, icon_source::module,
     -IDI_ONE_CLICK_RESTORE, GIL_SHIELD, type_categories::restore},
    {item_types::addons, false, 0, parsed_other, addons_prog_id, icon_source::module, -IDI_ADDONS, 0,
     type_categories::addons},
    {item_types::reserved_with_icon, false, 0, parsed_other, nullptr, icon_source::module, -IDI_RESERVED, 0,
     type_categories::restore},
    {item_types::reserved, false, 0, parsed_other, nullptr, icon_source::system, system_other_icon, 0,
     type_categories::folders},
}};

}  // namespace

const item_type_row& item_type(std::uint16_t type) noexcept {
    const auto* row = std::find_if(rows.begin(), rows.end(), [=](const auto& r) { return r.type == type; });
    return row != rows.end() ? *row : rows.back();
}

}  // namespace ov::name_space
