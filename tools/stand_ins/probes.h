#pragma once

#include <windows.h>
#include <objidl.h>
#include <shlobj.h>

namespace ov::stand_ins {

/// Questions to the system: does it have a function that shell extensions import? Each is answered by trying
/// the function, never by the system's name or version, so that a system which has learned it keeps its own.
///
/// They show nothing and change nothing. The thread has an apartment.

[[nodiscard]] bool lacks_default_extract_icon() noexcept;
[[nodiscard]] bool lacks_associations_for_classes() noexcept;
[[nodiscard]] bool lacks_data_objects() noexcept;
/// True when the system's context menus do not have the handlers registered for their items' classes.
[[nodiscard]] bool lacks_handlers_in_menus() noexcept;
[[nodiscard]] bool lacks_elevation() noexcept;

/// The same of a given function, null for one that is not exported.
[[nodiscard]] bool is_not_implemented(decltype(SHCreateDataObject)* create) noexcept;
/// True when a menu made by `create` looks at none of the classes that it is given: it cannot know which
/// handlers are registered for them.
[[nodiscard]] bool ignores_classes(decltype(SHCreateDefaultContextMenu)* create) noexcept;

}  // namespace ov::stand_ins
