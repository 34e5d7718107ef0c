#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

/// The headings under which the view groups the items, in ascending order of their ids.
namespace ov::name_space {

namespace type_categories {

inline constexpr std::uint32_t folders = 1;
inline constexpr std::uint32_t cloud = 2;
inline constexpr std::uint32_t restore = 3;
inline constexpr std::uint32_t addons = 4;

}  // namespace type_categories

/// {2E8B5D17-94AC-4F30-8D61-C7A2B9E04F85}: grouping by item type, the one way of grouping there is.
inline constexpr GUID type_category_guid = {
    0x2E8B5D17, 0x94AC, 0x4F30, {0x8D, 0x61, 0xC7, 0xA2, 0xB9, 0xE0, 0x4F, 0x85}};

/// True for the ids above.
[[nodiscard]] bool is_type_category(std::uint32_t id) noexcept;

/// The localised name of a category, which is also what the type column says of its items. Empty for an
/// unknown id, and while there is no resource library. Throws std::bad_alloc only.
[[nodiscard]] std::wstring type_category_name(std::uint32_t id);

}  // namespace ov::name_space
