#include "module/registration/registration_table.h"
#include "module/registration/registry_names.h"

namespace ov::registration {

namespace {

using enum root_key;
using enum removal;

constexpr removal_row rows[] = {
    // The shell extension class goes key by key, the other three as trees.
    {delete_key, classes_root, L"CLSID\\" ORV_SHELL_EXTENSION L"\\InprocServer32", nullptr},
    {delete_key, classes_root, L"CLSID\\" ORV_SHELL_EXTENSION, nullptr},
    {delete_key, classes_root, L"Directory\\shellex\\ContextMenuHandlers\\" ORV_HANDLER, nullptr},
    {delete_key, classes_root, L"*\\shellex\\ContextMenuHandlers\\" ORV_HANDLER, nullptr},
    {delete_key, classes_root, L"*\\shellex\\PropertySheetHandlers\\" ORV_HANDLER, nullptr},
    {delete_tree, classes_root, L"CLSID\\" ORV_NAMESPACE_FOLDER, nullptr},
    {delete_tree, classes_root, L"CLSID\\" ORV_ONE_CLICK_RESTORE, nullptr},
    {delete_tree, classes_root, L"CLSID\\" ORV_ADDONS, nullptr},

    {delete_tree, classes_root, L"WOW6432Node\\CLSID\\" ORV_NAMESPACE_FOLDER, nullptr},
    {delete_tree, classes_root, L"WOW6432Node\\CLSID\\" ORV_SHELL_EXTENSION, nullptr},
    {delete_tree, classes_root, L"WOW6432Node\\CLSID\\" ORV_ONE_CLICK_RESTORE, nullptr},
    {delete_tree, classes_root, L"WOW6432Node\\CLSID\\" ORV_ADDONS, nullptr},

    {probe_delete_key, local_machine, L"SOFTWARE\\" ORV_DESKTOP_NAMESPACE, nullptr},
    {probe_delete_value, local_machine, L"SOFTWARE\\" ORV_HIDDEN_ICONS, ORV_NAMESPACE_FOLDER},
    {delete_tree, local_machine, L"SOFTWARE\\Classes\\OrvaneFolderType", nullptr},
    {delete_tree, local_machine, L"SOFTWARE\\Classes\\OrvaneRestoreType", nullptr},
    {delete_tree, local_machine, L"SOFTWARE\\Classes\\OrvaneAddonsType", nullptr},
    {probe_delete_key, local_machine, L"SOFTWARE\\WOW6432Node\\" ORV_DESKTOP_NAMESPACE, nullptr},
    {probe_delete_value, local_machine, L"SOFTWARE\\WOW6432Node\\" ORV_HIDDEN_ICONS, ORV_NAMESPACE_FOLDER},

    // Below HKEY_CLASSES_ROOT, where registering writes no such keys; kept so on purpose.
    {delete_tree, classes_root, L"SOFTWARE\\WOW6432Node\\Classes\\OrvaneFolderType", nullptr},
    {delete_tree, classes_root, L"SOFTWARE\\WOW6432Node\\Classes\\OrvaneRestoreType", nullptr},
    {delete_tree, classes_root, L"SOFTWARE\\WOW6432Node\\Classes\\OrvaneAddonsType", nullptr},

    {notify_shell, classes_root, nullptr, nullptr},
};

}  // namespace

std::span<const removal_row> removal_rows() noexcept {
    return rows;
}

}  // namespace ov::registration
