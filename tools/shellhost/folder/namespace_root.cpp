#include "tools/shellhost/folder/namespace_root.h"

#include <oleauto.h>
#include <propkey.h>
#include <shlobj.h>

#include <array>

#include "module/state/class_ids.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/console.h"

namespace ov::shellhost {

namespace {

constexpr int guid_chars = 39;

/// The folder's own property: the type of an item, a 16-bit number.
constexpr PROPERTYKEY item_type_key = {
    {0x6A4F2C81, 0x0D3B, 0x4E97, {0xB2, 0xA6, 0x19, 0xC8, 0xE5, 0xF7, 0xD0, 0x34}}, 2};
constexpr std::uint16_t foreign_type = 0xFFFF;

}  // namespace

com::unique_absolute_id_list list_of_namespace_root() noexcept {
    std::array<wchar_t, guid_chars + 2> name{L':', L':'};
    StringFromGUID2(class_ids::namespace_folder, name.data() + 2, guid_chars);
    PIDLIST_ABSOLUTE list = nullptr;
    (void)SHParseDisplayName(name.data(), nullptr, &list, 0, nullptr);
    return com::unique_absolute_id_list(list);
}

namespace_root open_namespace_root() {
    namespace_root root;
    const HRESULT created = CoCreateInstance(class_ids::namespace_folder, nullptr, CLSCTX_INPROC_SERVER,
                                             IID_PPV_ARGS(root.folder.GetAddressOf()));
    if (FAILED(created)) {
        throw command_failure(L"the namespace folder cannot be created (is the module registered?): " +
                              describe(created));
    }
    root.list = list_of_namespace_root();
    Microsoft::WRL::ComPtr<IPersistFolder> persist;
    HRESULT placed = root.folder.As(&persist);
    if (SUCCEEDED(placed)) {
        placed = root.list != nullptr ? persist->Initialize(root.list.get()) : E_FAIL;
    }
    if (FAILED(placed)) {
        throw command_failure(L"the namespace folder cannot be placed below the desktop: " +
                              describe(placed));
    }
    return root;
}

std::vector<com::unique_child_id> items_of(IShellFolder* folder) {
    std::vector<com::unique_child_id> items;
    Microsoft::WRL::ComPtr<IEnumIDList> enumerator;
    const HRESULT result =
        folder->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS, enumerator.GetAddressOf());
    if (FAILED(result)) {
        throw command_failure(L"the folder's items cannot be listed: " + describe(result));
    }
    PITEMID_CHILD item = nullptr;
    ULONG fetched = 0;
    while (enumerator != nullptr && enumerator->Next(1, &item, &fetched) == S_OK) {
        items.emplace_back(item);
    }
    return items;
}

std::uint16_t type_of(IShellFolder2* folder, PCUITEMID_CHILD item) {
    VARIANT value;
    VariantInit(&value);
    const HRESULT result = folder->GetDetailsEx(item, &item_type_key, &value);
    const std::uint16_t type = SUCCEEDED(result) && value.vt == VT_UI2 ? value.uiVal : foreign_type;
    VariantClear(&value);
    return type;
}

}  // namespace ov::shellhost
