#include "namespace/item_objects/item_menu.h"

#include <shlobj.h>

namespace ov::name_space {

HRESULT create_item_menu(IShellFolder2& folder, PCIDLIST_ABSOLUTE place, HWND owner, UINT count,
                         PCUITEMID_CHILD_ARRAY entries, REFIID riid, void** result) noexcept {
    DEFCONTEXTMENU menu{};
    menu.hwnd = owner;
    menu.pidlFolder = place;
    menu.psf = &folder;
    menu.cidl = count;
    menu.apidl = entries;
    return SHCreateDefaultContextMenu(&menu, riid, result);
}

}  // namespace ov::name_space
