#include "tools/wine_window/view_order.h"

#include <commctrl.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <map>
#include <string>
#include <vector>

#include "ovufc/com/guard.h"
#include "ovufc/com/task_memory.h"

namespace ov::wine_window {

namespace {

using Microsoft::WRL::ComPtr;

/// The bytes of an item, as a key.
std::string bytes_of(PCUITEMID_CHILD item) {
    return {reinterpret_cast<const char*>(item), ILGetSize(item)};
}

com::unique_child_id item_at(IFolderView* view, int index) {
    PITEMID_CHILD item = nullptr;
    return com::unique_child_id(SUCCEEDED(view->Item(index, &item)) ? item : nullptr);
}

bool calls_items_equal(IFolderView* view, IShellFolder* folder) {
    const com::unique_child_id first = item_at(view, 0);
    const com::unique_child_id second = item_at(view, 1);
    if (first == nullptr || second == nullptr) {
        return false;
    }
    const HRESULT order = folder->CompareIDs(0, first.get(), second.get());
    return SUCCEEDED(order) && HRESULT_CODE(order) == 0;
}

/// Each item's place in the folder's enumeration; equal items share the first place.
std::map<std::string, int> folder_order(IShellFolder* folder) {
    std::map<std::string, int> places;
    ComPtr<IEnumIDList> enumerator;
    if (folder->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, enumerator.GetAddressOf()) !=
        S_OK) {
        return places;
    }
    PITEMID_CHILD item = nullptr;
    ULONG fetched = 0;
    for (int place = 0; enumerator->Next(1, &item, &fetched) == S_OK; ++place) {
        const com::unique_child_id owner(item);
        places.emplace(bytes_of(item), place);
    }
    return places;
}

int CALLBACK compare_places(LPARAM first, LPARAM second, LPARAM parameter) {
    const auto& places = *reinterpret_cast<const std::vector<int>*>(parameter);
    return places.at(static_cast<std::size_t>(first)) - places.at(static_cast<std::size_t>(second));
}

void sort(IFolderView* view, IShellFolder* folder, HWND list) {
    const auto order = folder_order(folder);
    std::vector<int> places;
    const int count = ListView_GetItemCount(list);
    for (int i = 0; i < count; ++i) {
        const com::unique_child_id item = item_at(view, i);
        const auto found = item != nullptr ? order.find(bytes_of(item.get())) : order.end();
        places.push_back(found != order.end() ? found->second : count);
    }
    SendMessageW(list, LVM_SORTITEMSEX, reinterpret_cast<WPARAM>(&places),
                 reinterpret_cast<LPARAM>(&compare_places));
}

}  // namespace

void keep_folder_order(IFolderView* view, HWND list) noexcept {
    (void)com::guarded([&] {
        ComPtr<IShellFolder> folder;
        const HRESULT result = view->GetFolder(IID_PPV_ARGS(folder.GetAddressOf()));
        if (SUCCEEDED(result) && calls_items_equal(view, folder.Get())) {
            sort(view, folder.Get(), list);
        }
        return result;
    });
}

}  // namespace ov::wine_window
