#pragma once

#include <string>

#include "companions/devservice/files/problem.h"
#include "companions/devservice/store/records.h"
#include "companions/devservice/store/vault.h"

namespace ov::devservice {

/// Takes the content of every file below `folder` into the store and gives the record of all that was seen.
/// What cannot be kept (in use, no access) is recorded without content and goes to `left_out`; so do folders
/// that cannot be listed. A name that is not recordable goes there only. Links are recorded as such. Called
/// inside vault::change.
[[nodiscard]] folder_copy copy_folder(vault& vault, const std::wstring& folder, problems& left_out);

/// Adds a copy to the state, with the next number and the present time. The reference holds until the next.
stored_copy& add_copy(service_state& state, copy_kind kind);

/// Protects a folder: remembers it and takes its first copy. Folders inside it that were protected by
/// themselves are now protected by it. A folder that is protected already only takes the new object path,
/// when one is given. ERROR_PATH_NOT_FOUND when it is not a folder or a link is on the way to it,
/// ERROR_INVALID_NAME when its name is not well formed, ERROR_ACCESS_DENIED for a volume's root and for what
/// holds, or lies in, the service's own folder.
[[nodiscard]] DWORD protect(vault& vault, const std::wstring& path, const std::wstring& object_path,
                            problems& left_out);

/// Forgets a protected folder (itself, not one around it) or the rule that lists it; the copies stay.
/// ERROR_NOT_FOUND when it is neither.
[[nodiscard]] DWORD unprotect(vault& vault, const std::wstring& path);

/// Takes a restore point of all protected folders; one that is missing at the moment goes to `left_out`.
/// ERROR_NOT_FOUND when no folder is protected. `number` receives the point's sequence number.
[[nodiscard]] DWORD take_restore_point(vault& vault, std::int64_t& number, problems& left_out);

}  // namespace ov::devservice
