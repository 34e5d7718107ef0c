#include "tools/shellhost/folder/folder_columns.h"

#include <shlobj.h>
#include <shlwapi.h>

#include "ovufc/com/task_memory.h"

namespace ov::shellhost {

std::vector<UINT> shown_columns(IShellFolder2* folder) {
    std::vector<UINT> columns;
    SHCOLSTATEF state = 0;
    // A folder may answer for more columns than it has headers.
    for (UINT i = 0; SUCCEEDED(folder->GetDefaultColumnState(i, &state)); ++i) {
        if ((state & SHCOLSTATE_ONBYDEFAULT) != 0 && !column_text(folder, nullptr, i).empty()) {
            columns.push_back(i);
        }
    }
    return columns;
}

std::wstring column_text(IShellFolder2* folder, PCUITEMID_CHILD item, UINT column) {
    SHELLDETAILS details{};
    wchar_t* text = nullptr;
    if (FAILED(folder->GetDetailsOf(item, column, &details)) ||
        FAILED(StrRetToStrW(&details.str, item, &text))) {
        return {};
    }
    const com::unique_task_text owner(text);
    return text;
}

}  // namespace ov::shellhost
