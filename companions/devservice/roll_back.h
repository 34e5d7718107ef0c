#pragma once

#include <string>

#include "companions/devservice/problem.h"
#include "companions/devservice/records.h"
#include "companions/devservice/vault.h"

namespace ov::devservice {

/// What a roll-back did.
struct roll_back_result {
    std::size_t restored = 0;     // files written again
    std::size_t untouched = 0;    // files that were as recorded
    std::size_t moved_aside = 0;  // files and links that were not there, or not so, at the restore point
    std::wstring aside;           // where those are now
    problems failed;
};

/// Brings one folder back to a record of it. Every file is byte-identical again; nothing is destroyed: what
/// was changed or appeared since is moved below `aside`. A file is replaced only when its recorded content
/// stands whole beside it, so that an interruption at any moment leaves each file in the old or the new
/// state, and a second run completes the work. Links are not followed; one is moved only when it is in the
/// way.
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
