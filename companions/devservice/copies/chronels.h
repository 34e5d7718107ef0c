#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companions/devservice/store/records.h"
#include "companions/devservice/store/vault.h"

namespace ov::devservice {

/// One kept version of a file. Points into the state that it was looked up in.
struct chronel {
    const stored_copy* copy = nullptr;
    const file_record* record = nullptr;
};

/// The kept versions of a file (a clean path), the newest first; copies that hold the same content one after
/// the other count once, as the newest of them.
[[nodiscard]] std::vector<chronel> chronels_of(const service_state& state, const std::wstring& path);

/// The list that the chronel dialog shows: an array of records with "fileName" (the file's own name),
/// "cloneFileName" (an identifier that only this service reads), "type" (why the copy was taken, in English
/// words), "createdOn" and "writtenOn" (file times), "size" (bytes).
[[nodiscard]] std::string chronel_list_text(const std::vector<chronel>& chronels);

/// The version of `path` that an identifier from outside names; no record when there is none. The identifier
/// is looked up and never becomes part of a path.
[[nodiscard]] chronel find_chronel(const service_state& state, const std::wstring& path,
                                   std::string_view clone_file_name);

/// Puts a version in the place of the file as it is now, which is kept: as a chronel of its own and in the
/// vault's aside folder. ERROR_ACCESS_DENIED when the path is in no protected folder or its way leads through
/// a link, ERROR_NOT_FOUND when there is no such version.
[[nodiscard]] DWORD restore_chronel(vault& vault, const std::wstring& path,
                                    const std::string& clone_file_name);

/// Writes a version into a new folder below `parent` under the last part of `wanted_name`, or under the
/// file's own name when that is not a file name or would change the file's type. `opened` receives the path.
[[nodiscard]] DWORD write_chronel_for_opening(const vault& vault, const std::wstring& path,
                                              const std::string& clone_file_name,
                                              const std::wstring& wanted_name, const std::wstring& parent,
                                              std::wstring& opened);

}  // namespace ov::devservice
