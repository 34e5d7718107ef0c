#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "companions/devservice/files/problem.h"
#include "companions/devservice/store/records.h"

namespace ov::devservice {

/// Something found below a folder.
struct found_entry {
    std::wstring relative;  // path below the folder that was walked
    entry_kind kind = entry_kind::file;
    bool marked = false;  // a file that bears the mark of a tracked one
    DWORD attributes = 0;
    std::uint64_t size_bytes = 0;
    std::int64_t written = 0;  // last write, a file time
};

/// Everything below `folder` (a clean path), each folder before what it holds. A link (any reparse point but
/// the mark of a tracked file) is named and not followed; see links.h for those that show no attribute.
/// `left_out` and what is below it are passed over: the service's own folder must not be copied into itself.
/// Folders that cannot be listed to their end go to `unlisted`, as paths below `folder`.
[[nodiscard]] std::vector<found_entry> walk_folder(const std::wstring& folder, const std::wstring& left_out,
                                                   problems& unlisted);

}  // namespace ov::devservice
