#pragma once

#include <string>

#include "companions/devservice/files/problem.h"
#include "companions/devservice/store/records.h"
#include "companions/devservice/store/vault.h"

namespace ov::devservice {

/// What a roll-back did.
struct roll_back_result {
    std::size_t restored = 0;     // files written again
    std::size_t untouched = 0;    // files that were as recorded
    std::size_t moved_aside = 0;  // files that were not there, or not so, and links in the way
    std::wstring aside;           // where those are now
    problems failed;
};

/// Brings one folder back to a record of it. Every file whose content was kept is byte-identical again;
/// nothing is destroyed: what was changed or appeared since is then below `aside`. An interruption at any
/// moment leaves each file in its old or its new form, and a second run completes the work.
///
/// Only what is known to have appeared since is moved: not what was seen and could not be kept, what is below
/// a folder that could not be listed, or what has a name that is not recordable. Links are not followed; one
/// is moved only when it is in the way. A file that was not kept, and is gone or has changed, is reported.
void roll_back_folder(const vault& vault, const folder_copy& copy, const std::wstring& aside,
                      roll_back_result& result);

/// The folders of a restore point that a roll-back would touch: those that lie in a protected folder today.
[[nodiscard]] std::vector<std::wstring> restorable_folders(const service_state& state,
                                                           const stored_copy& point);

/// The restore point of that time and number, or null.
[[nodiscard]] const stored_copy* find_restore_point(const service_state& state, std::int64_t created_on,
                                                    std::int64_t sequence_number);

/// Rolls back every restorable folder of a point. Called inside vault::change, with its state.
[[nodiscard]] roll_back_result roll_back(const vault& vault, const service_state& state,
                                         const stored_copy& point);

}  // namespace ov::devservice
