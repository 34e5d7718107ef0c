#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "ovufc/com/live_count.h"
#include "ovufc/i18n/rosetta_stone.h"

/// Global state of the module and facts about its host, for all folders. It uses the utility library only;
/// anything may use it. Written once at process attach, before any other code of the module runs, and read
/// without a lock afterwards; `restoreInProgress`, the lock and the counts are the exceptions and say so.
namespace ov::module_state {

/// The handle that the loader passes at process attach.
extern HINSTANCE module_instance;
/// Id of the host process.
extern std::uint32_t current_process_id;
/// Terminal Services session of the host process; 0 when the system does not tell.
extern std::uint32_t current_session_id;
/// Directory of the module's own file, ending in a backslash; empty if its path holds none.
extern std::wstring module_directory;

/// Guards the protected-locations cache: exclusive while the namespace folder's class object refreshes it,
/// shared while a folder copies the text. Never held together with a folder's own lock.
extern SRWLOCK cacheLock;
/// 1 while a One Click Restore runs, else 0. Changed only by atomic compare-and-exchange.
extern std::atomic<std::int32_t> restoreInProgress;
/// The one source of user-visible texts.
extern i18n::rosetta_stone resource_strings;

/// Live objects: class objects by class, then the objects that they make.
extern com::live_count shell_ext_factory_count;
extern com::live_count namespace_factory_count;
extern com::live_count restore_factory_count;
extern com::live_count addons_factory_count;
/// The three context-menu classes share one count.
extern com::live_count context_menu_object_count;
extern com::live_count property_sheet_object_count;
extern com::live_count namespace_object_count;

/// Fills the state above; called by DllMain at process attach, and by test programs that link the product's
/// libraries in place of the module.
void record_process_attach(HINSTANCE instance) noexcept;

/// Loads "orvres.dll" from the module's directory into `resource_strings` unless it is loaded. A missing or
/// rejected library is not a failure: texts are empty then.
void load_resource_library() noexcept;

}  // namespace ov::module_state
