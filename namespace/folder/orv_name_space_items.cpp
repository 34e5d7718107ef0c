// How the folder's list is built.

#include <windows.h>
#include <shlobj.h>

#include <array>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "namespace/folder/orv_name_space.h"
#include "namespace/items/item_types.h"
#include "namespace/locations/protected_locations.h"
#include "namespace/locations/user_folders.h"
#include "ovufc/i18n/message_ids.h"
#include "ovufc/ipc/drvport/client.h"
#include "ovufc/win/srw_lock.h"

namespace ov::name_space {

namespace {

namespace bits = user_folder_bits;

// Desktop and Documents stand before the protected locations, the other standard folders after them.
constexpr std::array leading_folders{bits::desktop, bits::documents};
constexpr std::array trailing_folders{bits::pictures, bits::objects_3d,  bits::contacts,
                                      bits::music,    bits::saved_games, bits::videos};

bool is_server_system() noexcept {
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    version.wProductType = VER_NT_WORKSTATION;
    return VerifyVersionInfoW(&version, VER_PRODUCT_TYPE,
                              VerSetConditionMask(0, VER_PRODUCT_TYPE, VER_EQUAL)) == FALSE;
}

// Empty when the system has no such folder.
std::wstring resolved_path(const KNOWNFOLDERID& folder) {
    wchar_t* path = nullptr;
    const HRESULT result = SHGetKnownFolderPath(folder, 0, nullptr, &path);
    const unique_task_text owned(path);
    return SUCCEEDED(result) && path != nullptr ? std::wstring(path) : std::wstring();
}

}  // namespace

orvNameSpace::orvNameSpace() : isServer(is_server_system()) {
    build_items();
}

void orvNameSpace::build_items() {
    const std::shared_ptr<const location_document> locations = protected_locations();
    const location_document& document = *locations;
    for (const std::uint32_t bit : leading_folders) {
        add_user_folder(document.user_folder_mask & bit);
    }
    add_category_items(document);
    for (const std::uint32_t bit : trailing_folders) {
        add_user_folder(document.user_folder_mask & bit);
    }
    read_flags();
    add_action_entries();
}

void orvNameSpace::add_item(std::wstring name, std::uint16_t type) {
    items.emplace_back(std::move(name), type, static_cast<std::uint16_t>(nextIndex));
    ++nextIndex;
}

void orvNameSpace::add_user_folder(std::uint32_t bit) {
    for (const user_folder& folder : user_folders()) {
        if (folder.bit != bit) {
            continue;
        }
        std::wstring path = resolved_path(*folder.known_folder);
        if (!path.empty()) {
            add_item(std::move(path), item_types::folder);
        }
    }
}

void orvNameSpace::add_category_items(const location_document& document) noexcept {
    if (!document.is_complete()) {
        return;
    }
    const win::exclusive_lock lock(itemsLock);
    try {
        add_locations(document);
    } catch (const std::exception&) {
        // Out of memory: the document costs the folder no more than the document's own items.
    }
}

void orvNameSpace::add_locations(const location_document& document) {
    items.reserve(items.size() + document.entry_count() + trailing_folders.size() + 2);
    // The order of display. A broken list shows what came before the break, and nothing comes after it.
    for (const std::wstring& name : document.hard_drive.names) {
        add_item(name, item_types::folder);
    }
    if (document.hard_drive.is_broken) {
        return;
    }
    (void)(add_all(document.mgmt_custom, item_types::folder) &&
           add_all(document.one_drive, item_types::cloud_folder) &&
           add_all(document.google, item_types::cloud_folder) &&
           add_all(document.box_syn, item_types::cloud_folder) &&
           add_all(document.drop_box, item_types::cloud_folder) &&
           add_all(document.one_drive_business, item_types::cloud_folder));
}

bool orvNameSpace::add_all(const location_list& list, std::uint16_t type) {
    for (const std::wstring& name : list.names) {
        add_item(name, type);
    }
    if (list.is_broken) {
        // In these lists an entry has its index before it is looked at, so the one that broke the list used
        // one up; among the local folders only an added item does.
        ++nextIndex;
    }
    return !list.is_broken;
}

void orvNameSpace::read_flags() noexcept {
    const std::uint32_t flags = ipc::drvport::flags();
    uiRestricted = (flags & ORV_FLAG_UI_RESTRICTED) != 0;
    showRestore = (flags & ORV_FLAG_RESTORE_HIDDEN) == 0;
    showAddons = (flags & ORV_FLAG_ADDONS_SHOWN) != 0;
    detailsView = (flags & ORV_FLAG_DETAILS_VIEW) != 0;
    exportsAvailable = (flags & ORV_FLAG_EXPORTS_AVAILABLE) != 0;
}

void orvNameSpace::add_action_entries() {
    const i18n::rosetta_stone& texts = module_state::resource_strings;
    if (!uiRestricted && showRestore) {
        add_item(texts.lookup(i18n::message_ids::entry_restore), item_types::one_click_restore);
    }
    if (showAddons) {
        add_item(texts.lookup(i18n::message_ids::entry_addons), item_types::addons);
    }
}

}  // namespace ov::name_space
