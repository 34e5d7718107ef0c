#include "tools/stand_ins/menus/registered_handlers.h"

#include <shlwapi.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>

namespace ov::stand_ins {

using Microsoft::WRL::ComPtr;

namespace {

constexpr DWORD key_name_chars = 256;  // The longest name of a registry key, with its terminator.
constexpr int guid_chars = 39;

bool may_change_default(const CLSID& clsid) {
    std::array<wchar_t, guid_chars> text{};
    StringFromGUID2(clsid, text.data(), guid_chars);
    const std::wstring path = std::wstring(L"CLSID\\") + text.data() + L"\\ShellEx\\MayChangeDefaultMenu";
    return static_cast<bool>(open_key_to_read(HKEY_CLASSES_ROOT, path.c_str()));
}

void add_class(const wchar_t* name, std::vector<unique_registry_key>& keys) {
    unique_registry_key key = open_key_to_read(HKEY_CLASSES_ROOT, name);
    if (key) {
        keys.push_back(std::move(key));
    }
}

}  // namespace

void add_handlers_of_class(HKEY class_key, std::vector<registered_handler>& handlers) {
    const unique_registry_key list = open_key_to_read(class_key, L"shellex\\ContextMenuHandlers");
    if (!list) {
        return;
    }
    std::array<wchar_t, key_name_chars> name{};
    DWORD length = key_name_chars;
    for (DWORD i = 0; RegEnumKeyExW(list.get(), i, name.data(), &length, nullptr, nullptr, nullptr,
                                    nullptr) == ERROR_SUCCESS;
         ++i, length = key_name_chars) {
        const std::wstring value = read_registry_text(list.get(), name.data(), nullptr);
        registered_handler found{name.data(), {}, false};
        if (FAILED(CLSIDFromString(value.c_str(), &found.clsid)) &&
            FAILED(CLSIDFromString(name.data(), &found.clsid))) {
            continue;
        }
        const bool known = std::any_of(handlers.begin(), handlers.end(), [&](const auto& each) {
            return IsEqualCLSID(each.clsid, found.clsid);
        });
        if (!known) {
            found.may_change_default = may_change_default(found.clsid);
            handlers.push_back(std::move(found));
        }
    }
}

std::vector<unique_registry_key> class_keys_of_path(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    std::vector<unique_registry_key> keys;
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return keys;
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        add_class(L"Directory", keys);
        add_class(L"Folder", keys);
    } else {
        const wchar_t* extension = PathFindExtensionW(path.c_str());
        if (*extension != L'\0') {
            const std::wstring prog_id = read_registry_text(HKEY_CLASSES_ROOT, extension, nullptr);
            if (!prog_id.empty()) {
                add_class(prog_id.c_str(), keys);
            }
            add_class(extension, keys);
        }
        add_class(L"*", keys);
    }
    add_class(L"AllFilesystemObjects", keys);
    return keys;
}

HRESULT open_handler(const registered_handler& handler, PCIDLIST_ABSOLUTE folder, IDataObject* selection,
                     HKEY class_key, IContextMenu** menu) noexcept {
    *menu = nullptr;
    ComPtr<IContextMenu> created;
    HRESULT result =
        CoCreateInstance(handler.clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(created.GetAddressOf()));
    if (FAILED(result)) {
        return result;
    }
    if (created == nullptr) {
        return E_NOINTERFACE;  // A class object may report success without an object.
    }
    ComPtr<IShellExtInit> initialiser;
    result = created.As(&initialiser);
    if (SUCCEEDED(result)) {
        result = initialiser->Initialize(folder, selection, class_key);
    }
    if (SUCCEEDED(result)) {
        *menu = created.Detach();
    }
    return result;
}

}  // namespace ov::stand_ins
