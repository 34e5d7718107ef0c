#include "namespace/items/display_name.h"

#include <shlobj.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include "namespace/items/item_id.h"
#include "ovufc/com/task_memory.h"

namespace ov::name_space {

namespace {

using Microsoft::WRL::ComPtr;

void drop_trailing_backslash(std::wstring& text) noexcept {
    if (!text.empty() && text.back() == L'\\') {
        text.pop_back();
    }
}

std::wstring shell_name_of(const std::wstring& path) {
    ComPtr<IShellItem> item;
    if (FAILED(SHCreateItemFromParsingName(path.c_str(), nullptr, __uuidof(IShellItem),
                                           reinterpret_cast<void**>(item.GetAddressOf())))) {
        return {};
    }
    wchar_t* text = nullptr;
    if (FAILED(item->GetDisplayName(SIGDN_NORMALDISPLAY, &text)) || text == nullptr) {
        return {};
    }
    return com::unique_task_text(text).get();
}

}  // namespace

std::wstring display_name_of(PCUIDLIST_RELATIVE entry) {
    if (!is_own_item_id(entry)) {
        return {};
    }
    const std::wstring name = item_name_of(entry);
    std::wstring shown = shell_name_of(name);
    drop_trailing_backslash(shown);
    if (shown.empty()) {
        shown = PathFindFileNameW(name.c_str());
        drop_trailing_backslash(shown);
    }
    return shown;
}

}  // namespace ov::name_space
