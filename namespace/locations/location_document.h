#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "namespace/items/item_types.h"
#include "ovufc/protocol/protected_locations.h"

/// What one protected-locations document says, read in a single pass.
namespace ov::name_space {

/// The arrays of the document: a row of its table each, in the order of display.
struct location_array {
    /// A member of the root; of the first, the object whose "folders" is the array.
    const char* key;
    /// What its entries are in the folder: one of `item_types`.
    std::uint16_t type;
    /// An entry takes its index before it is looked at, so that the one that breaks the array uses one up.
    /// Among the local folders only an item that is shown does.
    bool broken_entry_has_index;
};

inline constexpr std::array<location_array, 7> location_arrays{{
    {protocol::locations::hard_drive, item_types::folder, false},
    {protocol::locations::mgmt_custom, item_types::folder, true},
    {protocol::locations::cloud[0], item_types::cloud_folder, true},
    {protocol::locations::cloud[1], item_types::cloud_folder, true},
    {protocol::locations::cloud[2], item_types::cloud_folder, true},
    {protocol::locations::cloud[3], item_types::cloud_folder, true},
    {protocol::locations::cloud[4], item_types::cloud_folder, true},
}};

/// One of the document's arrays.
struct location_list {
    /// The key was there and its value was an array.
    bool is_array = false;
    /// An entry was not a string. `names` holds what came before it.
    bool is_broken = false;
    /// The entries, converted to UTF-16. Of "hardDrive"."folders" without the rules for profile folders. They
    /// stand in the document's `characters`.
    std::vector<std::wstring_view> names;
};

/// The document's seven arrays. Only what the folder needs is kept: no tree of the document is built.
struct location_document {
    /// By the rows of `location_arrays`.
    std::array<location_list, location_arrays.size()> lists;

    /// The local folders, "hardDrive"."folders".
    [[nodiscard]] location_list& local() noexcept { return lists.front(); }
    [[nodiscard]] const location_list& local() const noexcept { return lists.front(); }

    /// Which standard user folders "hardDrive"."folders" names, whatever the other arrays are; all of them
    /// when that array cannot be read to its end.
    std::uint32_t user_folder_mask = 0;

    /// What all names say, one behind the other: one block in place of an allocation for each. Who keeps a
    /// name longer than the document keeps this.
    std::shared_ptr<const wchar_t[]> characters;

    /// The text may say more than this; a later reading can tell.
    bool ran_out_of_memory = false;

    /// All seven arrays are there: else no item is made of any of them.
    [[nodiscard]] bool is_complete() const noexcept;

    /// How many entries the seven arrays hold.
    [[nodiscard]] std::size_t entry_count() const noexcept;
};

/// Reads `text`, in time linear in its length. Of a key given twice the last counts. An empty text, one that
/// is no JSON or nests deeper than anything sensible, and one that there is no memory for all give an
/// incomplete document with all user folders. Throws nothing.
[[nodiscard]] location_document read_location_document(std::string_view text) noexcept;

}  // namespace ov::name_space
