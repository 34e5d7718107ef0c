#include "companions/devservice/copies/folder_walk.h"

#include <string_view>

#include "companions/devservice/copies/mark.h"
#include "companions/devservice/files/path.h"
#include "ovufc/win/handle.h"

namespace ov::devservice {
namespace {

found_entry entry_from(const WIN32_FIND_DATAW& data, const std::wstring& relative) {
    found_entry entry{.relative = relative, .attributes = data.dwFileAttributes};
    entry.marked = is_marked_file(data.dwFileAttributes, data.dwReserved0);
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && !entry.marked) {
        entry.kind = entry_kind::link;
    } else if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        entry.kind = entry_kind::folder;
    }
    entry.size_bytes = ULARGE_INTEGER{{data.nFileSizeLow, data.nFileSizeHigh}}.QuadPart;
    const FILETIME& written = data.ftLastWriteTime;
    entry.written =
        static_cast<std::int64_t>(ULARGE_INTEGER{{written.dwLowDateTime, written.dwHighDateTime}}.QuadPart);
    return entry;
}

/// What stands directly in `folder`; an error when it cannot be listed to its
/// end.
DWORD list(const std::wstring& folder, const std::wstring& relative_to_root,
           std::vector<found_entry>& found) {
    WIN32_FIND_DATAW data{};
    const win::unique_find find(FindFirstFileExW(long_form(joined(folder, L"*")).c_str(), FindExInfoBasic,
                                                 &data, FindExSearchNameMatch, nullptr, 0));
    if (!find) {
        return GetLastError();
    }
    do {
        const std::wstring_view name = data.cFileName;
        if (name != L"." && name != L"..") {
            found.push_back(entry_from(data, joined(relative_to_root, name)));
        }
    } while (FindNextFileW(find.get(), &data));
    const DWORD error = GetLastError();
    return error == ERROR_NO_MORE_FILES ? ERROR_SUCCESS : error;
}

}  // namespace

std::vector<found_entry> walk_folder(const std::wstring& folder, const std::wstring& left_out,
                                     problems& unlisted) {
    std::vector<found_entry> found;
    std::vector<std::wstring> to_list{std::wstring()};
    // A list of its own in place of recursion: the depth of a folder is set by
    // whoever fills it.
    while (!to_list.empty()) {
        const std::wstring relative = std::move(to_list.back());
        to_list.pop_back();
        const std::wstring path = joined(folder, relative);
        std::vector<found_entry> here;
        if (const DWORD error = list(path, relative, here); error != ERROR_SUCCESS) {
            unlisted.push_back({relative, error});
        }
        for (found_entry& entry : here) {
            if (is_within(joined(folder, entry.relative), left_out)) {
                continue;
            }
            if (entry.kind == entry_kind::folder) {
                to_list.push_back(entry.relative);
            }
            found.push_back(std::move(entry));
        }
    }
    return found;
}

}  // namespace ov::devservice
