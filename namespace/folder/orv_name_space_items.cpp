// Building the list of items, from the document and the driver's flags.

#include <windows.h>
#include <shlobj.h>

#include <array>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "namespace/folder/orv_name_space.h"
#include "namespace/items/item_types.h"
#include "namespace/items/shared_text.h"
#include "namespace/locations/protected_locations.h"
#include "namespace/locations/user_folders.h"
#include "ovufc/com/known_folder.h"
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

}  // namespace

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

void orvNameSpace::add_item(shared_text name, std::uint16_t type) {
    items.emplace_back(std::move(name), type, static_cast<std::uint16_t>(nextIndex));
    ++nextIndex;
}

void orvNameSpace::add_user_folder(std::uint32_t bit) {
    for (const user_folder& folder : user_folders()) {
        if (folder.bit != bit) {
            continue;
        }
        const std::wstring path = com::known_folder_path(*folder.known_folder);
        if (!path.empty()) {
            add_item(shared_text(path), item_types::folder);
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
        // Out of memory: only the items of the document are missing then.
    }
}

void orvNameSpace::add_locations(const location_document& document) {
    items.reserve(items.size() + document.entry_count() + trailing_folders.size() + 2);
    for (std::size_t row = 0; row < location_arrays.size(); ++row) {
        for (const std::wstring_view name : document.lists[row].names) {
            add_item(shared_text(document.characters, name), location_arrays[row].type);
        }
        // A broken list shows what came before the break, and nothing comes after it.
        if (document.lists[row].is_broken) {
            nextIndex += location_arrays[row].broken_entry_has_index ? 1 : 0;
            return;
        }
    }
}

void orvNameSpace::add_action_entries() {
    const i18n::rosetta_stone& texts = module_state::resource_strings;
    if (!uiRestricted && showRestore) {
        add_item(shared_text(texts.lookup(i18n::message_ids::entry_restore)), item_types::one_click_restore);
    }
    if (showAddons) {
        add_item(shared_text(texts.lookup(i18n::message_ids::entry_addons)), item_types::addons);
    }
}

}  // namespace ov::name_space
