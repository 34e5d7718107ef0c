#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <shlobj.h>

namespace ov::stand_ins {

/// SHCreateDefaultContextMenu, which Wine answers with a menu that lacks the registered handlers.
///
/// The menu holds, for a single folder, "Open" as the default, then the items of every context-menu handler
/// registered for the selection's classes: those of `aKeys` when keys are given, else those of
/// `punkAssociationInfo`, else those of the IQueryAssociations that the folder gives for the items. Handlers
/// are created when the menu is queried and initialised with the folder's data object for the items; when
/// only the default verb is wanted, those without MayChangeDefaultMenu are left out. The callback object is
/// not called.
/// Documented under "SHCreateDefaultContextMenu function (shlobj_core.h)" and "DEFCONTEXTMENU structure".
STDAPI create_default_context_menu(const DEFCONTEXTMENU* description, REFIID riid, void** result);

}  // namespace ov::stand_ins
