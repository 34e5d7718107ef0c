#include "shell/entry_menus/selected_entry.h"

#include <shlobj.h>

namespace ov::shell {

bool selected_entry::find(IDataObject* selection) noexcept {
    if (selection == nullptr ||
        FAILED(SHCreateShellItemArrayFromDataObject(selection, IID_PPV_ARGS(&items_))) ||
        FAILED(items_->GetItemAt(0, &item_))) {
        return false;
    }
    wchar_t* name = nullptr;
    const HRESULT result = item_->GetDisplayName(SIGDN_NORMALDISPLAY, &name);
    name_.reset(name);
    return SUCCEEDED(result);
}

}  // namespace ov::shell
