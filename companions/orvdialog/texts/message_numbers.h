#pragma once

#include <cstdint>

/// The numbers of the dialogs' texts in the resource library's message table; companions/orvres/texts/en.txt
/// says what each is for. Apart from the module's own (ovufc/i18n/message_ids.h), as the two are shipped
/// apart.
namespace ov::dialog::message_numbers {

inline constexpr std::uint32_t protect_title = 0x40100;
inline constexpr std::uint32_t folder_label = 0x40101;
inline constexpr std::uint32_t about_protection = 0x40102;
/// One "%s": the menu item that ends the protection.
inline constexpr std::uint32_t already_protected = 0x40103;
inline constexpr std::uint32_t protect_this_folder = 0x40104;
inline constexpr std::uint32_t protect_other_path = 0x40105;
inline constexpr std::uint32_t path_label = 0x40106;
inline constexpr std::uint32_t browse = 0x40107;
inline constexpr std::uint32_t protect = 0x40108;
inline constexpr std::uint32_t cancel = 0x40109;
inline constexpr std::uint32_t problem_root = 0x4010A;
inline constexpr std::uint32_t problem_network = 0x4010B;
/// One "%s": the number of characters that there is room for.
inline constexpr std::uint32_t problem_too_long = 0x4010C;
inline constexpr std::uint32_t problem_gone = 0x4010D;
inline constexpr std::uint32_t problem_no_full_path = 0x4010E;
inline constexpr std::uint32_t chooser_title = 0x4010F;
inline constexpr std::uint32_t chooser_refused = 0x40110;

inline constexpr std::uint32_t versions_title = 0x40120;
inline constexpr std::uint32_t file_label = 0x40121;
inline constexpr std::uint32_t versions_label = 0x40122;
inline constexpr std::uint32_t open = 0x40123;
inline constexpr std::uint32_t restore = 0x40124;
inline constexpr std::uint32_t column_saved = 0x40125;
inline constexpr std::uint32_t column_size = 0x40126;
inline constexpr std::uint32_t column_kind = 0x40127;
inline constexpr std::uint32_t column_file_name = 0x40128;
inline constexpr std::uint32_t sort_by = 0x40129;
inline constexpr std::uint32_t kind_first_copy = 0x4012A;
inline constexpr std::uint32_t kind_restore_point = 0x4012B;
inline constexpr std::uint32_t kind_before_restore = 0x4012C;
inline constexpr std::uint32_t version_not_usable = 0x4012D;
inline constexpr std::uint32_t list_unreadable = 0x4012E;
inline constexpr std::uint32_t list_empty = 0x4012F;

inline constexpr std::uint32_t request_unreadable = 0x40140;
inline constexpr std::uint32_t not_shown = 0x40141;

}  // namespace ov::dialog::message_numbers
