#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What one protected-locations document says, read in a single pass.
namespace ov::name_space {

/// One of the document's arrays.
struct location_list {
    /// The key was there and its value was an array.
    bool is_array = false;
    /// An entry was not a string. `names` holds what came before it.
    bool is_broken = false;
    /// The entries, converted to UTF-16. Of "hardDrive"."folders" without the rules for profile folders.
    std::vector<std::wstring> names;
};

/// The document's seven arrays. Only what the folder needs is kept: no tree of the document is built.
struct location_document {
    location_list hard_drive;
    location_list mgmt_custom;
    location_list one_drive;
    location_list google;
    location_list box_syn;
    location_list drop_box;
    location_list one_drive_business;

    /// Which standard user folders "hardDrive"."folders" names, whatever the other arrays are; all of them
    /// when that array cannot be read to its end.
    std::uint32_t user_folder_mask = 0;

    /// The text may say more than this; a later reading can tell.
    bool ran_out_of_memory = false;

    /// All seven arrays are there: else no item is made of any of them.
    [[nodiscard]] bool is_complete() const noexcept;

    /// How many entries the seven arrays hold.
    [[nodiscard]] std::size_t entry_count() const noexcept;

  private:
    [[nodiscard]] std::array<const location_list*, 7> lists() const noexcept;
};

/// Reads `text`, in time linear in its length. Of a key given twice the last counts. An empty text, one that
/// is no JSON or nests deeper than anything sensible, and one that there is no memory for all give an
/// incomplete document with all user folders. Throws nothing.
[[nodiscard]] location_document read_location_document(std::string_view text) noexcept;

}  // namespace ov::name_space
