#pragma once

#include <string>

namespace ov::devservice {

/// True when a window of this process would be seen: not in a service's session or window station.
[[nodiscard]] bool session_is_interactive() noexcept;

/// Opens a file as a double-click would, when somebody can see it and it is neither program nor script: the
/// name comes from a client, and a kept version is not to be run by asking to look at it. Does nothing else
/// and tells no failure; the file stays where it is.
void open_for_user(const std::wstring& file) noexcept;

}  // namespace ov::devservice
