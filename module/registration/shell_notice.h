#pragma once

namespace ov::registration {

/// Tells the shell that the desktop's contents changed, so that the folder comes or goes without a new
/// logon. Skipped when the system has no item list for the desktop.
void notify_desktop_changed() noexcept;

}  // namespace ov::registration
