#pragma once

#include <windows.h>
#include <shtypes.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "namespace/items/item_data.h"
#include "ovufc/com/task_memory.h"

/// The item ID entry: the bytes by which the shell knows an item of the namespace folder.
///
/// An entry holds the item's type and its whole path or name, so every operation works from the entry alone.
/// Entries come back from other processes, from files and from the registry: a reader takes nothing from
/// beyond the entry's own `cb` bytes, whatever its length field says, and needs no alignment. Nothing here
/// keeps state; any thread may call it.
namespace ov::name_space {

namespace item_id_layout {

#pragma pack(push, 1)
/// Little-endian; the name follows, then the padding.
struct header {
    std::uint16_t cb;         // bytes of this entry: header, name and padding; not the list's terminator
    std::uint16_t signature;  // `own_signature`
    std::uint16_t type;       // one of `item_types`
    std::uint16_t index;      // ItemData::index
    std::uint16_t length;     // UTF-16 code units of the name, which has no terminator
};
#pragma pack(pop)

inline constexpr std::uint16_t own_signature = 0x6868;
/// The smallest entry of ours, in bytes; a shorter one belongs to another folder.
inline constexpr std::uint16_t smallest_own_cb = 12;
/// Zeros after the name, for readers that expect a terminator.
inline constexpr std::size_t padding_bytes = 4;
/// The two zero bytes that end an ID list.
inline constexpr std::size_t list_end_bytes = 2;

static_assert(sizeof(header) == 10);
static_assert(offsetof(header, cb) == 0);
static_assert(offsetof(header, signature) == 2);
static_assert(offsetof(header, type) == 4);
static_assert(offsetof(header, index) == 6);
static_assert(offsetof(header, length) == 8);
static_assert(sizeof(wchar_t) == 2);

}  // namespace item_id_layout

/// A new one-entry ID list for `item`, in one zero-filled block of the task allocator; null when there is no
/// memory. A name of more than 65,535 units is taken modulo 65,536, as its length field is; a name too long
/// for the 16-bit `cb` is cut to the 32,760 units that fit: with a wrong size every reader would read
/// out of bounds.
[[nodiscard]] com::unique_child_id make_item_id(const ItemData& item) noexcept;

/// True for an entry of this folder: present, of at least 12 bytes and with our signature.
[[nodiscard]] bool is_own_item_id(PCUIDLIST_RELATIVE entry) noexcept;

/// The item type, or `ItemData::unset` for the entry of another folder. Like the two below it reads the first
/// entry of a list.
[[nodiscard]] std::uint16_t item_type_of(PCUIDLIST_RELATIVE entry) noexcept;

/// The stored name; empty for the entry of another folder. Throws std::bad_alloc only.
[[nodiscard]] std::wstring item_name_of(PCUIDLIST_RELATIVE entry);

}  // namespace ov::name_space
