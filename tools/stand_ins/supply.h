#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ov::stand_ins {

/// Points the imports of `module` that Wine lacks or answers with "not implemented" at this library's own,
/// and says which: functions that the module does not import are not among them. On Windows nothing is
/// supplied and the list is empty.
///
/// The module is kept loaded for the rest of the process. A module that was supplied before is left as it is,
/// and its list is given again. Not for a module that another thread is just calling.
[[nodiscard]] std::vector<std::string> supply_missing(HMODULE module);

}  // namespace ov::stand_ins
