#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

namespace ov::registration {

enum class root_key { classes_root, local_machine };

/// How a row gets its key.
enum class key_use {
    create,  ///< created, or opened when it is there, with all access
    reopen,  ///< closed by the row before, opened again for reading and writing
    same,    ///< still open from the row before
};

/// What a row writes. Texts are REG_SZ, numbers REG_DWORD.
enum class data {
    none,           ///< nothing: the key alone
    text,           ///< the row's own text
    number,         ///< the row's own number
    module_path,    ///< full path of the module's file
    icon_location,  ///< the module's icon, as "path, -number"
};

/// How the pass in the 32-bit view differs.
enum class second_pass {
    same,       ///< not at all
    left_out,   ///< the row is written in the native view only
    server_32,  ///< the key is created empty; the unnamed value is then `server_32_path`, as REG_EXPAND_SZ
};

struct registration_row {
    root_key root;
    key_use use;
    const wchar_t* path;
    /// Empty for the unnamed value. An unnamed text is written while its key is created.
    const wchar_t* value_name;
    data kind;
    std::uint32_t number;
    const wchar_t* text;
    second_pass pass_2;
};

/// Every entry of the module in the order of writing: once as it stands in the native view, then once more in
/// the 32-bit view, so that 32-bit processes find the classes too.
[[nodiscard]] std::span<const registration_row> registration_rows() noexcept;

/// Where the installer puts the 32-bit module; 32-bit processes expand it.
inline constexpr const wchar_t* server_32_path = L"%systemroot%\\SysWow64\\orvshellext.dll";

enum class removal {
    delete_key,          ///< a missing key is fine, any other failure ends the run
    delete_tree,         ///< its result is ignored
    probe_delete_key,    ///< delete_key, unless the key is known not to be there
    probe_delete_value,  ///< a value is deleted, unless its key is known not to be there
    notify_shell,        ///< the last row
};

struct removal_row {
    removal action;
    root_key root;
    const wchar_t* path;
    const wchar_t* value_name;
};

/// What unregistering does, in order.
///
/// What the rows leave behind stays on purpose: the keys named by the bare class ids of One Click Restore and
/// Addons, directly below HKEY_CLASSES_ROOT in both views, and the 32-bit copy of the three ProgIDs where the
/// system keeps one.
[[nodiscard]] std::span<const removal_row> removal_rows() noexcept;

}  // namespace ov::registration
