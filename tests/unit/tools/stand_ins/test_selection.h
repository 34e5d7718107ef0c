#pragma once

#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <string>

#include "tools/stand_ins/items/id_list_array.h"

namespace ov::stand_ins {

/// One file or folder of the file system as the shell knows it.
struct test_selection {
    explicit test_selection(const std::wstring& path) : list(ILCreateFromPathW(path.c_str())) {
        PCUITEMID_CHILD child = nullptr;
        (void)SHBindToParent(list.get(), IID_PPV_ARGS(folder.GetAddressOf()), &child);
        item.reset(ILCloneChild(child));
        parent.reset(ILCloneFull(list.get()));
        ILRemoveLastID(parent.get());
    }

    com::unique_absolute_id_list list;
    com::unique_absolute_id_list parent;
    com::unique_child_id item;
    Microsoft::WRL::ComPtr<IShellFolder> folder;
};

}  // namespace ov::stand_ins
