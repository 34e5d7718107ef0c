#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

/// The records that the module and the dialog library exchange. Never changed: each library may be replaced
/// without the other.
namespace ov::dialog {

/// Ordinal of the folder-protection dialog: takes a protect_request*, returns non-zero for OK.
inline constexpr WORD protect_ordinal = 17;
/// Ordinal of the chronel dialog: takes a chronel_request* and a chronel_result*, returns non-zero when the
/// user chose an action.
inline constexpr WORD chronel_ordinal = 47;

/// Bit of `ProtectDialogRequest::flags`: unprotecting is offered too.
inline constexpr std::uint32_t protect_flag_show_unprotect = 0x80000000;

/// Zero-filled before use.
struct ProtectDialogRequest {
    std::uint32_t size_bytes;    // 544
    std::uint32_t reserved;      // 0
    const wchar_t* folder_path;  // zero-terminated
    std::uint32_t word_16;       // 0
    std::uint32_t flags;         // protect_flag_*
    wchar_t object_path[260];    // out: zero-terminated; empty when the dialog chose none
};

struct ChronelDialogRequest {
    std::uint32_t size_bytes;  // 32
    std::uint32_t reserved;
    HICON menu_icon;           // of the caller, valid during the call
    const wchar_t* file_path;  // the tracked file, zero-terminated
    const char* chronel_list;  // text as the driver wrote it, UTF-8, NUL-terminated
};

inline constexpr std::uint32_t chronel_action_open = 1;
inline constexpr std::uint32_t chronel_action_restore = 2;
inline constexpr std::uint32_t chronel_action_restore_too = 3;

/// Zero-filled before use; filled by the dialog, which sets `size_bytes` last, when all else is valid.
struct ChronelDialogResult {
    std::uint32_t size_bytes;  // 20492, else the result is not used
    std::uint32_t reserved;
    std::uint32_t action;            // chronel_action_*
    char chronel_identifier[16384];  // UTF-8, zero-terminated
    wchar_t file_name[2048];         // zero-terminated
};

using show_protect_dialog = std::uint32_t(WINAPI*)(ProtectDialogRequest*);
using show_chronel_dialog = std::uint32_t(WINAPI*)(ChronelDialogRequest*, ChronelDialogResult*);

#ifdef _WIN64
static_assert(sizeof(ProtectDialogRequest) == 544);
static_assert(offsetof(ProtectDialogRequest, folder_path) == 8);
static_assert(offsetof(ProtectDialogRequest, word_16) == 16);
static_assert(offsetof(ProtectDialogRequest, flags) == 20);
static_assert(offsetof(ProtectDialogRequest, object_path) == 24);
static_assert(sizeof(ChronelDialogRequest) == 32);
static_assert(offsetof(ChronelDialogRequest, menu_icon) == 8);
static_assert(offsetof(ChronelDialogRequest, file_path) == 16);
static_assert(offsetof(ChronelDialogRequest, chronel_list) == 24);
#endif
static_assert(sizeof(ChronelDialogResult) == 20492);
static_assert(offsetof(ChronelDialogResult, action) == 8);
static_assert(offsetof(ChronelDialogResult, chronel_identifier) == 12);
static_assert(offsetof(ChronelDialogResult, file_name) == 16396);

}  // namespace ov::dialog
