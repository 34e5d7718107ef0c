#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "companions/devservice/store/records.h"

namespace ov::devservice {

/// How long copies are kept. The newest sixteen of each kind stay whole; of older ones stays what the
/// chronels need: the newest sixteen versions of each file. A restore point beyond that becomes a past point.
/// A version goes with it when the sixteen restore points all looked where its file was, and saw none.

/// Also as many as a reply about restore points holds with room to spare.
inline constexpr std::size_t copies_kept = 16;
inline constexpr std::size_t versions_kept = 16;

/// Takes out of the state what is no longer kept. A copy of which nothing is left goes altogether.
void let_older_copies_go(service_state& state);

/// The objects that the copies in the state name.
[[nodiscard]] std::set<std::string> needed_objects(const service_state& state);

}  // namespace ov::devservice
