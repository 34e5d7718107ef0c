#pragma once

#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "module/state/class_ids.h"
#include "testkit/process/shipped_module.h"

namespace ov::test {

using Microsoft::WRL::ComPtr;

/// One item as anybody sees it who knows the entry's layout and not our code.
struct seen_item {
    std::uint16_t type;
    std::uint16_t index;
    std::wstring name;

    bool operator==(const seen_item&) const = default;
};

inline void PrintTo(const seen_item& item, std::ostream* out) {
    *out << std::hex << item.type << " #" << std::dec << item.index << " ";
    for (const wchar_t c : item.name) {
        *out << static_cast<char>(c < 0x80 ? c : '?');
    }
}

inline seen_item seen_in(const void* entry) {
    std::uint16_t words[5];
    std::memcpy(words, entry, sizeof(words));
    std::wstring name(words[4], L'\0');
    std::memcpy(name.data(), static_cast<const char*>(entry) + sizeof(words), name.size() * sizeof(wchar_t));
    EXPECT_EQ(0x6868, words[1]);
    EXPECT_EQ(words[4] * 2 + 14, words[0]);
    return {words[2], words[3], name};
}

/// All items of a folder, in order.
inline std::vector<seen_item> items_of(IShellFolder& folder) {
    std::vector<seen_item> items;
    ComPtr<IEnumIDList> list;
    EXPECT_EQ(S_OK, folder.EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, &list));
    PITEMID_CHILD entry = nullptr;
    ULONG fetched = 0;
    while (list != nullptr && list->Next(1, &entry, &fetched) == S_OK) {
        items.push_back(seen_in(entry));
        CoTaskMemFree(entry);
    }
    return items;
}

/// The items of some types only.
inline std::vector<seen_item> items_of(IShellFolder& folder, std::uint16_t type) {
    std::vector<seen_item> items = items_of(folder);
    std::erase_if(items, [=](const seen_item& item) { return item.type != type; });
    return items;
}

/// The shipped module with COM on this thread; each test loads it anew, so that its cache is empty.
class module_folder_test : public testing::Test {
  protected:
    module_folder_test() { (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~module_folder_test() override { CoUninitialize(); }

    [[nodiscard]] ComPtr<IShellFolder2> make_folder() const {
        ComPtr<IShellFolder2> folder;
        EXPECT_EQ(S_OK, module.create(class_ids::namespace_folder, IID_IShellFolder2,
                                      reinterpret_cast<void**>(folder.GetAddressOf())));
        return folder;
    }

    shipped_module module;
};

/// The path of a standard user folder; empty where this system has none.
inline std::wstring known_path(REFKNOWNFOLDERID id) {
    wchar_t* path = nullptr;
    std::wstring text = SUCCEEDED(SHGetKnownFolderPath(id, 0, nullptr, &path)) ? path : L"";
    CoTaskMemFree(path);
    return text;
}

}  // namespace ov::test
