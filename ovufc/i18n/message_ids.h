#pragma once

#include <cstdint>

/// The numbers of the texts in the resource library's message table, and the role of each.
namespace ov::i18n::message_ids {

inline constexpr std::uint32_t product_title = 0;
inline constexpr std::uint32_t menu_protect = 0x40000;
inline constexpr std::uint32_t menu_unprotect = 0x40001;
/// One "%s": the folder's path.
inline constexpr std::uint32_t ask_unprotect = 0x40003;
/// Column-1 text and heading of local and managed folders, and of every unknown type.
inline constexpr std::uint32_t category_folders = 0x40004;
inline constexpr std::uint32_t category_cloud = 0x40005;
inline constexpr std::uint32_t category_restore = 0x40006;
inline constexpr std::uint32_t category_addons = 0x40007;
inline constexpr std::uint32_t grouping_description = 0x40008;
inline constexpr std::uint32_t grouping_name = 0x40009;
inline constexpr std::uint32_t column_name = 0x4000A;
inline constexpr std::uint32_t column_type = 0x4000B;
inline constexpr std::uint32_t entry_restore = 0x4000C;
inline constexpr std::uint32_t entry_addons = 0x4000D;
/// No restore point, or a failed call.
inline constexpr std::uint32_t failure = 0x40014;
/// One "%s": the restore point's date and time.
inline constexpr std::uint32_t ask_restore = 0x40015;
/// One "%s": the restore point's date and time.
inline constexpr std::uint32_t ask_restore_again = 0x40016;
inline constexpr std::uint32_t ask_addons = 0x40017;
/// One "%s": the date and time of the last timestamp.
inline constexpr std::uint32_t addons_result = 0x40018;
inline constexpr std::uint32_t menu_tracked_file = 0x40019;
inline constexpr std::uint32_t unprotect_blocked = 0x4001A;

}  // namespace ov::i18n::message_ids
