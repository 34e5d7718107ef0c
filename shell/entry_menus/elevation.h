#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

namespace ov::shell {

/// Shows the system's administrator prompt. The object that comes back proves the user's consent and has no
/// other use; null when the user declined or the prompt failed. Throws only std::bad_alloc.
[[nodiscard]] Microsoft::WRL::ComPtr<IFileOperation> ask_for_elevation();

}  // namespace ov::shell
