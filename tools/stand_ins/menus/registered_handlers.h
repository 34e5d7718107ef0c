#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <string>
#include <vector>

#include "tools/stand_ins/menus/registry_value.h"

namespace ov::stand_ins {

/// A context-menu handler as the registry names it.
struct registered_handler {
    /// The name of its key below ContextMenuHandlers.
    std::wstring name;
    CLSID clsid;
    /// Its class has the key ShellEx\MayChangeDefaultMenu: only such handlers are loaded when a default verb
    /// is looked for.
    bool may_change_default = false;
};

/// Adds the handlers below `shellex\ContextMenuHandlers` of a class key to `handlers`, in the registry's
/// order. A class that is there already is not added again; one without a class id is left out. A handler's
/// class id is the default value of its key or, failing that, the key's own name. Documented under
/// "Registering Shell Extension Handlers".
void add_handlers_of_class(HKEY class_key, std::vector<registered_handler>& handlers);

/// The class keys under which handlers of a file or directory are registered, most special first: for a
/// directory Directory, Folder and AllFilesystemObjects; for a file its ProgID, its extension, * and
/// AllFilesystemObjects. Empty when there is nothing at `path`.
[[nodiscard]] std::vector<unique_registry_key> class_keys_of_path(const std::wstring& path);

/// Creates the handler through COM and initialises it with the selection, as the shell does before it asks
/// for the menu. On failure the HRESULT says which of the two calls refused, and `menu` is null.
[[nodiscard]] HRESULT open_handler(const registered_handler& handler, PCIDLIST_ABSOLUTE folder,
                                   IDataObject* selection, HKEY class_key, IContextMenu** menu) noexcept;

}  // namespace ov::stand_ins
