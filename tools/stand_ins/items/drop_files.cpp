#include "tools/stand_ins/items/drop_files.h"

#include <shlobj.h>

#include <algorithm>

namespace ov::stand_ins {

unique_global make_drop_files(const std::vector<std::wstring>& paths) noexcept {
    std::size_t length_chars = 1;
    for (const std::wstring& path : paths) {
        length_chars += path.size() + 1;
    }
    unique_global memory(
        GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + length_chars * sizeof(wchar_t)));
    if (!memory) {
        return memory;
    }
    const global_lock lock(memory.get());
    auto* header = static_cast<DROPFILES*>(lock.data());
    header->pFiles = sizeof(DROPFILES);
    header->fWide = TRUE;
    auto* text = reinterpret_cast<wchar_t*>(header + 1);
    for (const std::wstring& path : paths) {
        text = std::copy(path.begin(), path.end(), text) + 1;
    }
    return memory;
}

}  // namespace ov::stand_ins
