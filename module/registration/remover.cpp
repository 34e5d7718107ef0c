#include <exception>
#include <string>

#include "module/registration/registration.h"
#include "module/registration/registration_table.h"
#include "module/registration/shell_notice.h"
#include "ovufc/win/reg_key.h"

namespace ov::registration {

namespace {

// False only when the key is known to be missing: an unreadable one is still worth the attempt.
bool may_exist(HKEY root, const wchar_t* path) noexcept {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(root, path, 0, KEY_READ, &key);
    if (status == ERROR_SUCCESS) {
        RegCloseKey(key);
    }
    return status != ERROR_FILE_NOT_FOUND;
}

template <class RootKey>
void delete_value(RootKey& key, const removal_row& row) {
    key.open(row.path, win::reg_view::native, false);
    if (key.has_value(row.value_name)) {
        key.remove_value(row.value_name);
    }
    key.close();
}

template <class RootKey>
void remove_row(const removal_row& row) {
    RootKey key;
    switch (row.action) {
        case removal::delete_key:
            key.remove(row.path);
            break;
        case removal::delete_tree:
            key.remove_tree(row.path);
            break;
        case removal::probe_delete_key:
            if (may_exist(RootKey::root(), row.path)) {
                key.remove(row.path);
            }
            break;
        case removal::probe_delete_value:
            if (may_exist(RootKey::root(), row.path)) {
                delete_value(key, row);
            }
            break;
        case removal::notify_shell:
            notify_desktop_changed();
            break;
    }
}

}  // namespace

HRESULT unregister_server() noexcept {
    try {
        for (const removal_row& row : removal_rows()) {
            if (row.root == root_key::classes_root) {
                remove_row<win::classes_root_key>(row);
            } else {
                remove_row<win::local_machine_key>(row);
            }
        }
        return S_OK;
    } catch (const std::exception&) {
        return E_UNEXPECTED;
    }
}

}  // namespace ov::registration
