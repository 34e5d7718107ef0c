#include "tools/stand_ins/items/item_paths.h"

#include <shlobj.h>
#include <shlwapi.h>
#include <wrl/client.h>

namespace ov::stand_ins {

using Microsoft::WRL::ComPtr;

HRESULT bind_folder(PCIDLIST_ABSOLUTE list, IShellFolder** folder) noexcept {
    *folder = nullptr;
    if (ILIsEmpty(list)) {
        return SHGetDesktopFolder(folder);
    }
    return SHBindToObject(nullptr, list, nullptr, IID_PPV_ARGS(folder));
}

std::wstring name_of_item(IShellFolder* folder, PCUITEMID_CHILD item, SHGDNF flags) {
    STRRET returned{};
    if (FAILED(folder->GetDisplayNameOf(item, flags, &returned))) {
        return {};
    }
    wchar_t* text = nullptr;
    if (FAILED(StrRetToStrW(&returned, item, &text))) {
        return {};
    }
    const com::unique_task_text owner(text);
    return text;
}

SFGAOF attributes_of_item(IShellFolder* folder, PCUITEMID_CHILD item, SFGAOF mask) noexcept {
    SFGAOF attributes = mask;
    return SUCCEEDED(folder->GetAttributesOf(1, &item, &attributes)) ? attributes & mask : 0;
}

std::vector<std::wstring> file_system_paths(const item_selection& selection) {
    ComPtr<IShellFolder> folder;
    if (FAILED(bind_folder(selection.folder.get(), folder.GetAddressOf()))) {
        return {};
    }
    std::vector<std::wstring> paths;
    for (const com::unique_child_id& item : selection.items) {
        std::wstring path = name_of_item(folder.Get(), item.get(), SHGDN_FORPARSING);
        // "::{class id}" names a place that is not a path, whatever its attributes say.
        if (path.empty() || path.rfind(L"::", 0) == 0 ||
            attributes_of_item(folder.Get(), item.get(), SFGAO_FILESYSTEM) == 0) {
            return {};
        }
        paths.push_back(std::move(path));
    }
    return paths;
}

}  // namespace ov::stand_ins
