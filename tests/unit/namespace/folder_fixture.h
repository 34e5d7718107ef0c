#pragma once

#include <windows.h>
#include <objbase.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "module/state/module_state.h"
#include "namespace/folder/orv_name_space.h"
#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"
#include "ovufc/com/adopt.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/process/shipped_module.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/module_attach.h"

namespace ov::test {

using Microsoft::WRL::ComPtr;

/// Every file but the driver's device, which is absent whatever else runs on this system.
inline HANDLE WINAPI open_all_but_the_device(LPCWSTR path, DWORD access, DWORD share,
                                             SECURITY_ATTRIBUTES* security, DWORD disposition,
                                             DWORD attributes, HANDLE model) {
    if (_wcsicmp(path, ORV_DEVICE_PATH) == 0) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    // Not by its import, which leads here.
    static const auto real = reinterpret_cast<decltype(&CreateFileW)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "CreateFileW")));
    return real(path, access, share, security, disposition, attributes, model);
}

/// A thread with COM, the resource library's texts, and one real folder made while no driver is there: the
/// standard user folders of this system and the One Click Restore entry.
class folder_test : public testing::Test {
  protected:
    folder_test() {
        (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        // Once in a process; later calls change nothing.
        (void)module_state::resource_strings.load(program_directory() + L"orvres.dll");
        folder = com::adopt(com::make_object<name_space::orvNameSpace>());
    }
    ~folder_test() override {
        folder.Reset();
        CoUninitialize();
    }

    /// An entry as the folder would issue it.
    [[nodiscard]] static com::unique_child_id entry(std::uint16_t type,
                                                    const std::wstring& name = L"C:\\windows") {
        return name_space::make_item_id(name_space::ItemData(name, type, 0));
    }
    /// An entry of some other folder.
    [[nodiscard]] static com::unique_child_id foreign_entry() {
        auto made = entry(name_space::item_types::folder);
        made->mkid.abID[0] ^= 1;
        return made;
    }

    [[nodiscard]] static std::wstring text(std::uint32_t number) {
        return module_state::resource_strings.lookup(number);
    }

  private:
    import_patch<decltype(CreateFileW)> no_device_{GetModuleHandleW(nullptr), "kernel32.dll", "CreateFileW",
                                                   open_all_but_the_device};

  protected:
    ComPtr<name_space::orvNameSpace> folder;
};

/// What a folder enumerates, read back from its entries.
struct listed_item {
    std::wstring name;
    std::uint16_t type;
    std::uint16_t index;

    bool operator==(const listed_item&) const = default;
};

inline void PrintTo(const listed_item& item, std::ostream* out) {
    *out << std::hex << item.type << " #" << std::dec << item.index << " "
         << std::string(item.name.begin(), item.name.end());
}

[[nodiscard]] inline std::vector<listed_item> list_of(IShellFolder2& folder) {
    std::vector<listed_item> items;
    ComPtr<IEnumIDList> enumerator;
    EXPECT_EQ(S_OK, folder.EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, &enumerator));
    PITEMID_CHILD entry = nullptr;
    ULONG fetched = 0;
    while (enumerator != nullptr && enumerator->Next(1, &entry, &fetched) == S_OK) {
        const com::unique_child_id owned(entry);
        name_space::item_id_layout::header head;
        std::memcpy(&head, entry, sizeof(head));
        items.push_back({name_space::item_name_of(entry), name_space::item_type_of(entry), head.index});
    }
    return items;
}

[[nodiscard]] inline std::wstring text_of(STRRET value) {
    if (value.uType != STRRET_WSTR || value.pOleStr == nullptr) {
        ADD_FAILURE() << "not a STRRET_WSTR";
        return {};
    }
    const com::unique_task_text owned(value.pOleStr);
    return owned.get();
}

}  // namespace ov::test
