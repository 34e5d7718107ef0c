#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "namespace/items/shared_text.h"

namespace ov::name_space {

/// One item of the namespace folder, as the folder and its enumerators hold it. A plain value: copied and
/// moved freely, owns its name together with its copies.
class ItemData {
  public:
    /// What `type` and `index` are until the record is filled, and what the entry of another folder reads as.
    static constexpr std::uint16_t unset = 0xFFFF;

    ItemData() = default;
    ItemData(shared_text item_name, std::uint16_t item_type, std::uint16_t item_index) noexcept
        : name(std::move(item_name)), type(item_type), index(item_index) {}
    ItemData(std::wstring_view item_name, std::uint16_t item_type, std::uint16_t item_index)
        : ItemData(shared_text(item_name), item_type, item_index) {}
    ItemData(const ItemData&) = default;
    ItemData(ItemData&&) noexcept = default;
    ItemData& operator=(const ItemData&) = default;
    ItemData& operator=(ItemData&&) noexcept = default;
    /// Virtual on purpose, though nothing derives: the layout of the record begins with a function table.
    virtual ~ItemData() = default;

    /// Folders: the full path as the driver or the system gave it. Action entries: their localised name.
    /// What its alignment leaves behind it holds the two fields that follow: of 100,000 records the time goes
    /// by their size.
    [[no_unique_address]] shared_text name;
    /// One of `item_types`.
    std::uint16_t type = unset;
    /// The folder's running counter when the item was added; informational.
    std::uint16_t index = unset;
};

}  // namespace ov::name_space
