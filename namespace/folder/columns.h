#pragma once

#include <windows.h>
#include <oaidl.h>
#include <propkeydef.h>
#include <shtypes.h>

#include <string>

/// The folder's two columns: property key, header and value of each.
namespace ov::name_space {

namespace columns {

inline constexpr UINT name = 0;
inline constexpr UINT type = 1;

/// Width of every column, in characters.
inline constexpr int width_chars = 64;

}  // namespace columns

/// PKEY_ItemNameDisplay of the Windows property system.
inline constexpr PROPERTYKEY item_name_key = {
    {0xB725F130, 0x47EF, 0x101A, {0xA5, 0xF1, 0x02, 0x60, 0x8C, 0x9E, 0xEB, 0xAC}}, 10};

/// The item-type key, this folder's own.
inline constexpr PROPERTYKEY item_type_key = {
    {0x6A4F2C81, 0x0D3B, 0x4E97, {0xB2, 0xA6, 0x19, 0xC8, 0xE5, 0xF7, 0xD0, 0x34}}, 2};

/// The key by which the view is told to group: the format identifier is all zeros. The category provider
/// answers it, and does not answer the item-type key.
inline constexpr PROPERTYKEY grouping_key = {GUID{}, 2};

/// The key of a column; null for a column that the folder does not have.
[[nodiscard]] const PROPERTYKEY* column_key(UINT column) noexcept;

/// The localised header; empty for a column that the folder does not have. Throws std::bad_alloc only.
[[nodiscard]] std::wstring column_header(UINT column);

/// What a column says of an entry, as text; empty for a key that no column has. Throws std::bad_alloc only.
[[nodiscard]] std::wstring column_text(PCUITEMID_CHILD entry, const PROPERTYKEY& key);

/// The same as a property value, which the caller clears: the name as VT_BSTR, the type as VT_UI2 (the item
/// type itself), any other key VT_EMPTY. Throws std::bad_alloc only.
[[nodiscard]] VARIANT column_value(PCUITEMID_CHILD entry, const PROPERTYKEY& key);

}  // namespace ov::name_space
