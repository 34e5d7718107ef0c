#include "namespace/items/item_id.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace ov::name_space {

namespace {

using item_id_layout::header;

constexpr std::size_t fixed_bytes = sizeof(header) + item_id_layout::padding_bytes;
constexpr std::size_t longest_name_units =
    (std::numeric_limits<std::uint16_t>::max() - fixed_bytes) / sizeof(wchar_t);
static_assert(longest_name_units == 32760);

// A copy of the header of an entry that is ours. An entry may lie at any address.
bool read_own_header(PCUIDLIST_RELATIVE entry, header& head) noexcept {
    if (entry == nullptr) {
        return false;
    }
    const auto* bytes = reinterpret_cast<const std::byte*>(entry);
    std::memcpy(&head.cb, bytes, sizeof(head.cb));
    if (head.cb < item_id_layout::smallest_own_cb) {
        return false;
    }
    std::memcpy(&head, bytes, sizeof(head));
    return head.signature == item_id_layout::own_signature;
}

}  // namespace

com::unique_child_id make_item_id(const ItemData& item) noexcept {
    const std::wstring_view name = item.name.view();
    const std::size_t wrapped_units = static_cast<std::uint16_t>(name.size());
    const std::size_t units = std::min(wrapped_units, longest_name_units);
    const std::size_t entry_bytes = fixed_bytes + units * sizeof(wchar_t);
    const std::size_t list_bytes = entry_bytes + item_id_layout::list_end_bytes;

    auto* bytes = static_cast<std::byte*>(CoTaskMemAlloc(list_bytes));
    if (bytes == nullptr) {
        return nullptr;
    }
    std::memset(bytes, 0, list_bytes);
    const header head{.cb = static_cast<std::uint16_t>(entry_bytes),
                      .signature = item_id_layout::own_signature,
                      .type = item.type,
                      .index = item.index,
                      .length = static_cast<std::uint16_t>(units)};
    std::memcpy(bytes, &head, sizeof(head));
    std::memcpy(bytes + sizeof(head), name.data(), units * sizeof(wchar_t));
    return com::unique_child_id(reinterpret_cast<PITEMID_CHILD>(bytes));
}

bool is_own_item_id(PCUIDLIST_RELATIVE entry) noexcept {
    header head;
    return read_own_header(entry, head);
}

std::uint16_t item_type_of(PCUIDLIST_RELATIVE entry) noexcept {
    header head;
    return read_own_header(entry, head) ? head.type : ItemData::unset;
}

std::wstring item_name_of(PCUIDLIST_RELATIVE entry) {
    header head;
    if (!read_own_header(entry, head)) {
        return {};
    }
    const std::size_t units_inside = (head.cb - sizeof(header)) / sizeof(wchar_t);
    std::wstring name(std::min<std::size_t>(head.length, units_inside), L'\0');
    std::memcpy(name.data(), reinterpret_cast<const std::byte*>(entry) + sizeof(header),
                name.size() * sizeof(wchar_t));
    return name;
}

}  // namespace ov::name_space
