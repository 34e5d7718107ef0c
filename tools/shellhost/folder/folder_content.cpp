#include "tools/shellhost/folder/folder_content.h"

#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>

#include "tools/shellhost/folder/folder_columns.h"
#include "tools/shellhost/folder/namespace_root.h"
#include "tools/stand_ins/items/interface_ids.h"
#include "tools/stand_ins/items/item_paths.h"

namespace ov::shellhost {

namespace {

using Microsoft::WRL::ComPtr;

constexpr UINT type_column = 1;
/// The key by which the folder's own view groups; the category provider knows every key of this format.
constexpr PROPERTYKEY grouping_key = {{}, 2};

void read_icon(IShellFolder2* folder, PCUITEMID_CHILD item, content_item& read) {
    ComPtr<IExtractIconW> extractor;
    if (FAILED(folder->GetUIObjectOf(nullptr, 1, &item, __uuidof(IExtractIconW), nullptr,
                                     reinterpret_cast<void**>(extractor.GetAddressOf()))) ||
        extractor == nullptr) {
        return;
    }
    std::array<wchar_t, MAX_PATH> file{};
    if (extractor->GetIconLocation(GIL_FORSHELL, file.data(), MAX_PATH, &read.icon_index, &read.icon_flags) ==
        S_OK) {
        read.icon_file = file.data();
    }
}

content_item read_item(IShellFolder2* folder, PCUITEMID_CHILD item) {
    constexpr SFGAOF all_attributes = ~SFGAOF{0};
    content_item read;
    read.name = stand_ins::name_of_item(folder, item, SHGDN_NORMAL);
    read.type = column_text(folder, item, type_column);
    read.parsing_name = stand_ins::name_of_item(folder, item, SHGDN_FORPARSING);
    read.attributes = stand_ins::attributes_of_item(folder, item, all_attributes);
    read_icon(folder, item, read);
    return read;
}

ComPtr<ICategorizer> categorizer_of(IShellFolder2* folder) {
    ComPtr<ICategoryProvider> provider;
    ComPtr<ICategorizer> categorizer;
    GUID category{};
    if (SUCCEEDED(folder->CreateViewObject(nullptr, IID_PPV_ARGS(provider.GetAddressOf()))) &&
        SUCCEEDED(provider->GetCategoryForSCID(&grouping_key, &category))) {
        (void)provider->CreateCategory(&category, IID_PPV_ARGS(categorizer.GetAddressOf()));
    }
    return categorizer;
}

content_group& group_of(std::vector<content_group>& groups, ICategorizer* categorizer, PCUITEMID_CHILD item) {
    DWORD category = 0;
    if (categorizer != nullptr) {
        (void)categorizer->GetCategory(1, &item, &category);
    }
    const auto found = std::find_if(groups.begin(), groups.end(),
                                    [&](const content_group& group) { return group.category == category; });
    if (found != groups.end()) {
        return *found;
    }
    content_group& added = groups.emplace_back();
    added.category = category;
    CATEGORY_INFO info{};
    if (categorizer != nullptr && SUCCEEDED(categorizer->GetCategoryInfo(category, &info))) {
        info.wszName[std::size(info.wszName) - 1] = L'\0';
        added.heading = info.wszName;
    }
    return added;
}

}  // namespace

std::vector<content_group> read_content(IShellFolder2* folder) {
    const ComPtr<ICategorizer> categorizer = categorizer_of(folder);
    std::vector<content_group> groups;
    for (const auto& item : items_of(folder)) {
        group_of(groups, categorizer.Get(), item.get()).items.push_back(read_item(folder, item.get()));
    }
    std::stable_sort(groups.begin(), groups.end(), [&](const content_group& a, const content_group& b) {
        const HRESULT order = categorizer->CompareCategory(CATSORT_DEFAULT, a.category, b.category);
        return static_cast<short>(HRESULT_CODE(order)) < 0;
    });
    return groups;
}

}  // namespace ov::shellhost
