#include "module/class_objects.h"

#include <shlobj.h>

#include <algorithm>
#include <array>

#include "module/state/class_ids.h"
#include "namespace/folder/orv_name_space.h"
#include "namespace/locations/protected_locations.h"
#include "shell/entry_menus/orv_addons_ctx_menu.h"
#include "shell/entry_menus/orv_restore_ctx_menu.h"
#include "shell/file_menu/orvane_ctx_menu.h"
#include "shell/property_sheet/orvane_property_sheet.h"

namespace ov {

namespace {

struct class_row {
    const CLSID& id;
    HRESULT (*hand_out)(REFIID riid, void** ppv) noexcept;
};

constexpr std::array classes{
    class_row{class_ids::shell_extension, &orvShellExt::hand_out},
    class_row{class_ids::namespace_folder, &orvNameSpaceExt::hand_out},
    class_row{class_ids::one_click_restore, &orvRestoreExt::hand_out},
    class_row{class_ids::addons, &orvAddonsExt::hand_out},
};

}  // namespace

HRESULT orvShellExt::make_instance(REFIID riid, void** ppv) noexcept {
    if (riid == IID_IContextMenu || riid == IID_IShellExtInit) {
        return make_and_query<shell::OrvaneCtxMenu>(riid, ppv);
    }
    if (riid == IID_IShellPropSheetExt) {
        return make_and_query<shell::OrvanePropertySheet>(riid, ppv);
    }
    return S_OK;
}

HRESULT orvNameSpaceExt::make_instance(REFIID riid, void** ppv) noexcept {
    name_space::refresh_protected_locations();
    return make_and_query<name_space::orvNameSpace>(riid, ppv);
}

HRESULT orvRestoreExt::make_instance(REFIID riid, void** ppv) noexcept {
    return riid == IID_IContextMenu ? make_and_query<shell::OrvRestoreCtxMenu>(riid, ppv) : S_OK;
}

HRESULT orvAddonsExt::make_instance(REFIID riid, void** ppv) noexcept {
    return riid == IID_IContextMenu ? make_and_query<shell::OrvAddonsCtxMenu>(riid, ppv) : S_OK;
}

HRESULT get_class_object(REFCLSID rclsid, REFIID riid, void** ppv) noexcept {
    const auto* row = std::find_if(classes.begin(), classes.end(),
                                   [&](const class_row& known) { return known.id == rclsid; });
    return row == classes.end() ? CLASS_E_CLASSNOTAVAILABLE : row->hand_out(riid, ppv);
}

bool can_unload() noexcept {
    using namespace module_state;
    return shell_ext_factory_count.value() == 0 && namespace_factory_count.value() == 0 &&
           restore_factory_count.value() == 0 && addons_factory_count.value() == 0 &&
           context_menu_object_count.value() == 0 && namespace_object_count.value() == 0;
}

}  // namespace ov
