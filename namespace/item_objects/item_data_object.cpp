#include "namespace/item_objects/item_data_object.h"

#include <objidl.h>
#include <shlobj.h>
#include <versionhelpers.h>

#include <cstring>
#include <string>

#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"

namespace ov::name_space {

namespace {

// A movable block with the file list {path}; null when there is no memory.
HGLOBAL make_file_list(const std::wstring& path) noexcept {
    static_assert(sizeof(DROPFILES) == 20);
    const std::size_t path_bytes = path.size() * sizeof(wchar_t);
    // The path's own terminator and the list's.
    const std::size_t end_bytes = 2 * sizeof(wchar_t);
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + path_bytes + end_bytes);
    if (block == nullptr) {
        return nullptr;
    }
    auto* bytes = static_cast<std::byte*>(GlobalLock(block));
    if (bytes == nullptr) {
        GlobalFree(block);
        return nullptr;
    }
    DROPFILES header{};
    header.pFiles = sizeof(header);
    header.fWide = TRUE;
    std::memcpy(bytes, &header, sizeof(header));
    std::memcpy(bytes + sizeof(header), path.data(), path_bytes);
    GlobalUnlock(block);
    return block;
}

void add_file_list(IDataObject& object, const std::wstring& path) noexcept {
    HGLOBAL block = make_file_list(path);
    if (block == nullptr) {
        return;
    }
    FORMATETC format{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium{};
    medium.tymed = TYMED_HGLOBAL;
    medium.hGlobal = block;
    // On success the object owns the block.
    if (FAILED(object.SetData(&format, &medium, TRUE))) {
        GlobalFree(block);
    }
}

}  // namespace

HRESULT create_item_data_object(PCIDLIST_ABSOLUTE folder, UINT count, PCUITEMID_CHILD_ARRAY entries,
                                REFIID riid, void** result) {
    const HRESULT made = SHCreateDataObject(folder, count, entries, nullptr, riid, result);
    if (FAILED(made) || *result == nullptr || count == 0) {
        return made;
    }
    if (item_type(item_type_of(entries[0])).browsable && !IsWindows8OrGreater()) {
        add_file_list(*static_cast<IDataObject*>(*result), item_name_of(entries[0]));
    }
    return made;
}

}  // namespace ov::name_space
