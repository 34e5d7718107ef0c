#pragma once

#include <windows.h>

#include "companions/devservice/store/vault.h"

namespace ov::devservice {

/// Serves under the service manager until it says stop; its log is orvsvc.log in the state folder, begun anew
/// at each start. A Windows error code: ERROR_FAILED_SERVICE_CONTROLLER_CONNECT when it was not the service
/// manager who started this process. Once per process.
[[nodiscard]] DWORD run_as_windows_service(vault& store);

}  // namespace ov::devservice
