#pragma once

namespace ov::runtime {

/// Closes the semaphores that the C++ runtime made inside this DLL. For the DLL's entry, when the DLL is
/// unloaded and the runtime has done its last: nothing of the DLL runs after that.
void close_semaphores() noexcept;

}  // namespace ov::runtime
