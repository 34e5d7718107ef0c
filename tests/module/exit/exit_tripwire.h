#pragma once

namespace ov::test {

/// exit_tripwire.dll, loaded last, is the first that the system tells of the process's end, after it has
/// ended all other threads. From then on the process ends with this code as soon as one of our libraries
/// calls any function that it imports.
inline constexpr unsigned tripped_exit_code = 97;

}  // namespace ov::test
