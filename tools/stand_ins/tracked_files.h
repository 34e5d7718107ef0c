#pragma once

#include <windows.h>

namespace ov::stand_ins {

/// From now on `module` is told that every file bears the mark of a tracked file (a reparse point of tag
/// 0x51), through its import table: the file systems below Wine keep no such marks. Folders, and all else
/// that it asks of a file, are answered by the system. False when nothing was done: where the system's volume
/// keeps reparse points, as on Windows, and for a module that does not ask.
///
/// The module must stay loaded for the rest of the process. Not for one that another thread is just calling.
[[nodiscard]] bool answer_tracked_mark(HMODULE module);

}  // namespace ov::stand_ins
