#include "module/registration/registration_table.h"

#include "module/registration/registry_names.h"

namespace ov::registration {

namespace {

using enum root_key;
using enum key_use;

// Makers of rows, one for each kind of value; `pass_2` says how a row differs in the 32-bit view.
constexpr registration_row with_text(root_key root, const wchar_t* path, key_use use, const wchar_t* name,
                                     const wchar_t* text, second_pass pass_2 = second_pass::same) {
    return {root, use, path, name, data::text, 0, text, pass_2};
}
constexpr registration_row with_number(root_key root, const wchar_t* path, key_use use, const wchar_t* name,
                                       std::uint32_t number) {
    return {root, use, path, name, data::number, number, nullptr, second_pass::same};
}
constexpr registration_row key_only(root_key root, const wchar_t* path) {
    return {root, create, path, L"", data::none, 0, nullptr, second_pass::same};
}
constexpr registration_row server(const wchar_t* path, second_pass pass_2 = second_pass::same) {
    return {classes_root, create, path, L"", data::module_path, 0, nullptr, pass_2};
}
constexpr registration_row icon(const wchar_t* path) {
    return {classes_root, create, path, L"", data::icon_location, 0, nullptr, second_pass::same};
}

constexpr const wchar_t* unnamed = L"";
constexpr const wchar_t* threading_model = L"ThreadingModel";
constexpr const wchar_t* apartment = L"Apartment";
constexpr auto native_view_only = second_pass::left_out;

// The system's file-system folder: the object that the shell makes for the namespace folder's Instance key.
constexpr const wchar_t* file_system_folder = L"{0E5AAE11-A475-4c5b-AB00-C66DE400274E}";

// SFGAO_HASSUBFOLDER, FILESYSTEM, FOLDER, FILESYSANCESTOR, STORAGEANCESTOR and STORAGE.
constexpr std::uint32_t folder_attributes = 0xF0800008;
constexpr std::uint32_t folder_value_flags = 0x28;
constexpr std::uint32_t instance_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
constexpr std::uint32_t sort_order = 0x42;

constexpr const wchar_t* shell_extension_server = L"CLSID\\" ORV_SHELL_EXTENSION L"\\InprocServer32";
constexpr const wchar_t* restore_server = L"CLSID\\" ORV_ONE_CLICK_RESTORE L"\\InprocServer32";
constexpr const wchar_t* addons_server = L"CLSID\\" ORV_ADDONS L"\\InprocServer32";
constexpr const wchar_t* folder = L"CLSID\\" ORV_NAMESPACE_FOLDER;
constexpr const wchar_t* folder_server = L"CLSID\\" ORV_NAMESPACE_FOLDER L"\\InprocServer32";
constexpr const wchar_t* folder_shell = L"CLSID\\" ORV_NAMESPACE_FOLDER L"\\ShellFolder";

constexpr registration_row rows[] = {
    // The shell extension object, and where folders and files name it.
    with_text(classes_root, L"CLSID\\" ORV_SHELL_EXTENSION, create, unnamed,
              L"Orvane Vaultkeep Shell Extension"),
    server(shell_extension_server, second_pass::server_32),
    with_text(classes_root, shell_extension_server, reopen, threading_model, apartment),
    with_text(classes_root, L"Directory\\shellex\\ContextMenuHandlers\\" ORV_HANDLER, create, unnamed,
              ORV_SHELL_EXTENSION, native_view_only),
    with_text(classes_root, L"*\\shellex\\ContextMenuHandlers\\" ORV_HANDLER, create, unnamed,
              ORV_SHELL_EXTENSION, native_view_only),
    with_text(classes_root, L"*\\shellex\\PropertySheetHandlers\\" ORV_HANDLER, create, unnamed,
              ORV_SHELL_EXTENSION, native_view_only),

    // One Click Restore. Its name stands in a key directly below the root, not below CLSID. Odd, and kept
    // on purpose; removal leaves it there. The same goes for Addons.
    with_text(classes_root, ORV_ONE_CLICK_RESTORE, create, unnamed, L"Orvane Vaultkeep One Click Restore"),
    server(restore_server),
    with_text(classes_root, restore_server, reopen, threading_model, apartment),
    key_only(classes_root, L"CLSID\\" ORV_ONE_CLICK_RESTORE L"\\ShellEx\\MayChangeDefaultMenu"),

    // Addons.
    with_text(classes_root, ORV_ADDONS, create, unnamed, L"Orvane Vaultkeep Addons"),
    server(addons_server),
    with_text(classes_root, addons_server, reopen, threading_model, apartment),
    key_only(classes_root, L"CLSID\\" ORV_ADDONS L"\\ShellEx\\MayChangeDefaultMenu"),

    // The namespace folder.
    with_text(classes_root, folder, create, unnamed, L"Orvane"),
    with_number(classes_root, folder, same, L"System.IsPinnedToNamespaceTree", 1),
    with_number(classes_root, folder, same, L"SortOrderIndex", sort_order),
    icon(L"CLSID\\" ORV_NAMESPACE_FOLDER L"\\DefaultIcon"),
    server(folder_server, second_pass::server_32),
    with_text(classes_root, folder_server, same, threading_model, apartment),
    with_number(classes_root, folder_shell, create, L"Attributes", folder_attributes),
    with_number(classes_root, folder_shell, same, L"FolderValueFlags", folder_value_flags),
    with_text(classes_root, L"CLSID\\" ORV_NAMESPACE_FOLDER L"\\Instance", create, L"CLSID",
              file_system_folder),
    with_number(classes_root, L"CLSID\\" ORV_NAMESPACE_FOLDER L"\\Instance\\InitPropertyBag", create,
                L"Attributes", instance_attributes),

    // In the navigation pane, and not as an icon on the desktop.
    with_text(local_machine, L"SOFTWARE\\" ORV_DESKTOP_NAMESPACE, create, unnamed, L"Orvane"),
    with_number(local_machine, L"SOFTWARE\\" ORV_HIDDEN_ICONS, create, ORV_NAMESPACE_FOLDER, 1),

    // The types of the folder's items, each with its menu.
    with_text(local_machine,
              L"SOFTWARE\\Classes\\OrvaneFolderType\\shellex\\ContextMenuHandlers\\" ORV_HANDLER, create,
              unnamed, ORV_SHELL_EXTENSION),
    with_text(local_machine,
              L"SOFTWARE\\Classes\\OrvaneRestoreType\\shellex\\ContextMenuHandlers\\" ORV_HANDLER, create,
              unnamed, ORV_ONE_CLICK_RESTORE),
    with_text(local_machine,
              L"SOFTWARE\\Classes\\OrvaneAddonsType\\shellex\\ContextMenuHandlers\\" ORV_HANDLER, create,
              unnamed, ORV_ADDONS),
};

}  // namespace

std::span<const registration_row> registration_rows() noexcept {
    return rows;
}

}  // namespace ov::registration
