#include "tools/shellhost/menus/file_selection.h"

#include <shlobj.h>

#include <array>

#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/console.h"
#include "tools/stand_ins/items/data_object.h"

namespace ov::shellhost {

namespace {

using com::unique_absolute_id_list;
using Microsoft::WRL::ComPtr;

constexpr DWORD path_limit_chars = 32768;

std::wstring full_path_of(const std::wstring& path) {
    std::vector<wchar_t> full(path_limit_chars);
    const DWORD length = GetFullPathNameW(path.c_str(), path_limit_chars, full.data(), nullptr);
    if (length == 0 || length >= path_limit_chars) {
        throw command_failure(L"'" + path + L"' is not a path");
    }
    std::wstring text(full.data(), length);
    if (text.size() > 3 && text.back() == L'\\') {
        text.pop_back();
    }
    if (GetFileAttributesW(text.c_str()) == INVALID_FILE_ATTRIBUTES) {
        throw command_failure(L"there is no file or folder '" + text + L"'");
    }
    return text;
}

com::unique_absolute_id_list list_of_path(const std::wstring& path) {
    PIDLIST_ABSOLUTE list = nullptr;
    const HRESULT result = SHParseDisplayName(path.c_str(), nullptr, &list, 0, nullptr);
    if (FAILED(result)) {
        throw command_failure(L"the shell does not know '" + path + L"': " + describe(result));
    }
    return com::unique_absolute_id_list(list);
}

/// Adds one more item, which must lie in the folder of those before.
void add(file_selection& selection, const std::wstring& path) {
    com::unique_absolute_id_list list = list_of_path(path);
    selection.ids.items.emplace_back(
        ILCloneChild(reinterpret_cast<PCUITEMID_CHILD>(ILFindLastID(list.get()))));
    ILRemoveLastID(list.get());
    if (selection.ids.folder == nullptr) {
        selection.ids.folder = std::move(list);
    } else if (!ILIsEqual(selection.ids.folder.get(), list.get())) {
        throw command_failure(L"'" + path + L"' is in another folder than '" + selection.paths.front() +
                              L"'; a selection is made in one folder");
    }
    selection.paths.push_back(path);
}

bool has_drop_files(IDataObject* data) {
    FORMATETC format{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    return data->QueryGetData(&format) == S_OK;
}

ComPtr<IDataObject> data_object_of(const file_selection& selection) {
    const auto children = selection.ids.children();
    ComPtr<IDataObject> data;
    (void)selection.folder->GetUIObjectOf(nullptr, static_cast<UINT>(children.size()), children.data(),
                                          __uuidof(IDataObject), nullptr,
                                          reinterpret_cast<void**>(data.GetAddressOf()));
    if (data == nullptr || !has_drop_files(data.Get())) {
        data.Reset();
        const HRESULT result =
            stand_ins::create_data_object(selection.ids.folder.get(), static_cast<UINT>(children.size()),
                                          children.data(), nullptr, IID_PPV_ARGS(data.GetAddressOf()));
        if (FAILED(result)) {
            throw command_failure(L"no data object can be made for the selection: " + describe(result));
        }
    }
    return data;
}

}  // namespace

file_selection select_files(const std::vector<std::wstring>& paths) {
    file_selection selection;
    for (const std::wstring& path : paths) {
        add(selection, full_path_of(path));
    }
    ComPtr<IShellFolder> folder;
    PCUITEMID_CHILD child = nullptr;
    com::unique_absolute_id_list first = list_of_path(selection.paths.front());
    const HRESULT result = SHBindToParent(first.get(), IID_PPV_ARGS(folder.GetAddressOf()), &child);
    if (FAILED(result)) {
        throw command_failure(L"the folder of '" + selection.paths.front() + L"' cannot be opened: " +
                              describe(result));
    }
    selection.folder = folder;
    selection.data = data_object_of(selection);
    return selection;
}

}  // namespace ov::shellhost
