#include "tools/shellhost/script/shown_items.h"

#include <wrl/client.h>

#include "ovufc/com/task_memory.h"
#include "tools/shellhost/folder/folder_columns.h"

namespace ov::shellhost {

namespace {

using Microsoft::WRL::ComPtr;

ComPtr<IShellFolder2> folder_of(IFolderView* view) {
    ComPtr<IShellFolder2> folder;
    if (view != nullptr) {
        (void)view->GetFolder(IID_PPV_ARGS(folder.GetAddressOf()));
    }
    return folder;
}

std::vector<std::wstring> texts_of(IShellFolder2* folder, PCUITEMID_CHILD item) {
    std::vector<std::wstring> texts;
    for (const UINT column : shown_columns(folder)) {
        texts.push_back(column_text(folder, item, column));
    }
    return texts;
}

}  // namespace

std::vector<std::wstring> columns_of_view(IFolderView* view) {
    const ComPtr<IShellFolder2> folder = folder_of(view);
    return folder != nullptr ? texts_of(folder.Get(), nullptr) : std::vector<std::wstring>();
}

std::vector<std::vector<std::wstring>> items_of_view(IFolderView* view) {
    std::vector<std::vector<std::wstring>> items;
    const ComPtr<IShellFolder2> folder = folder_of(view);
    int count = 0;
    if (folder != nullptr) {
        (void)view->ItemCount(SVGIO_ALLVIEW, &count);
    }
    for (int i = 0; i < count; ++i) {
        PITEMID_CHILD item = nullptr;
        (void)view->Item(i, &item);
        const com::unique_child_id owner(item);
        items.push_back(item != nullptr ? texts_of(folder.Get(), item) : std::vector<std::wstring>());
    }
    return items;
}

}  // namespace ov::shellhost
