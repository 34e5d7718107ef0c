#include "namespace/item_objects/item_icon.h"

#include <shellapi.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <string>

#include "module/state/module_state.h"
#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"

namespace ov::name_space {

namespace {

constexpr const wchar_t* module_file_name = L"orvshellext.dll";
constexpr const wchar_t* system_icon_file = L"shell32.dll";

struct icon_location {
    std::wstring file;
    int index;
};

icon_location location_of(PCUITEMID_CHILD entry, const item_type_row& type) {
    if (type.icon == icon_source::module) {
        return {module_state::module_directory + module_file_name, type.icon_index};
    }
    if (type.icon == icon_source::path) {
        SHFILEINFOW info{};
        const std::wstring path = item_name_of(entry);
        if (SHGetFileInfoW(path.c_str(), 0, &info, sizeof(info), SHGFI_ICONLOCATION) != 0 &&
            info.szDisplayName[0] != L'\0') {
            return {info.szDisplayName, info.iIcon};
        }
    }
    return {system_icon_file, type.icon_index};
}

}  // namespace

HRESULT create_item_icon(PCUITEMID_CHILD entry, REFIID riid, void** result) {
    Microsoft::WRL::ComPtr<IDefaultExtractIconInit> extractor;
    const HRESULT made = SHCreateDefaultExtractIcon(__uuidof(IDefaultExtractIconInit),
                                                    reinterpret_cast<void**>(extractor.GetAddressOf()));
    if (FAILED(made)) {
        return made;
    }
    const item_type_row& type = item_type(item_type_of(entry));
    if (type.icon_flags != 0) {
        (void)extractor->SetFlags(type.icon_flags);
    }
    const icon_location icon = location_of(entry, type);
    (void)extractor->SetNormalIcon(icon.file.c_str(), icon.index);
    return extractor->QueryInterface(riid, result);
}

}  // namespace ov::name_space
