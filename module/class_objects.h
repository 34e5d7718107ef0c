#pragma once

#include "module/class_object.h"
#include "module/state/module_state.h"

/// The four class objects. Each makes what the table in class_objects.cpp says for its class id.
namespace ov {

/// Makes the file and folder menu or the property page, depending on the interface. For any other interface,
/// IUnknown included, it answers S_OK and leaves `*ppv` as it was. Odd, and kept on purpose: part of the
/// class's contract.
class orvShellExt final : public class_object<orvShellExt> {
  public:
    static com::live_count& factory_count() noexcept { return module_state::shell_ext_factory_count; }
    [[nodiscard]] HRESULT make_instance(REFIID riid, void** ppv) noexcept;
};

/// Makes the namespace folder, after it has refreshed the protected-locations cache. The folder decides which
/// interfaces it answers.
class orvNameSpaceExt final : public class_object<orvNameSpaceExt> {
  public:
    static com::live_count& factory_count() noexcept { return module_state::namespace_factory_count; }
    [[nodiscard]] HRESULT make_instance(REFIID riid, void** ppv) noexcept;
};

/// Makes the One Click Restore menu for IContextMenu; any other interface as with orvShellExt.
class orvRestoreExt final : public class_object<orvRestoreExt> {
  public:
    static com::live_count& factory_count() noexcept { return module_state::restore_factory_count; }
    [[nodiscard]] HRESULT make_instance(REFIID riid, void** ppv) noexcept;
};

/// Makes the Addons menu for IContextMenu; any other interface as with orvShellExt.
class orvAddonsExt final : public class_object<orvAddonsExt> {
  public:
    static com::live_count& factory_count() noexcept { return module_state::addons_factory_count; }
    [[nodiscard]] HRESULT make_instance(REFIID riid, void** ppv) noexcept;
};

/// The class object of `rclsid`, asked for `riid`. CLASS_E_CLASSNOTAVAILABLE, and `*ppv` left alone, for a
/// class that is not the module's.
[[nodiscard]] HRESULT get_class_object(REFCLSID rclsid, REFIID riid, void** ppv) noexcept;

/// True when nothing keeps the module loaded. A live property page does not, on purpose.
[[nodiscard]] bool can_unload() noexcept;

}  // namespace ov
