#include "tools/stand_ins/supply.h"

#include <array>
#include <map>
#include <memory>

#include "testkit/imports/import_patch.h"
#include "tools/stand_ins/associations/associations.h"
#include "tools/stand_ins/associations/default_extract_icon.h"
#include "tools/stand_ins/elevation.h"
#include "tools/stand_ins/items/data_object.h"
#include "tools/stand_ins/menus/default_context_menu.h"
#include "tools/stand_ins/probes.h"

namespace ov::stand_ins {

namespace {

template <class Function>
FARPROC as_procedure(Function* function) noexcept {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

const std::array own_stand_ins = {
    stand_in{"SHCreateDefaultExtractIcon", &lacks_default_extract_icon,
             as_procedure(&create_default_extract_icon)},
    stand_in{"AssocCreateForClasses", &lacks_associations_for_classes, as_procedure(&create_associations)},
    stand_in{"SHCreateDataObject", &lacks_data_objects, as_procedure(&create_data_object)},
    stand_in{"SHCreateDefaultContextMenu", &lacks_handlers_in_menus,
             as_procedure(&create_default_context_menu)},
    stand_in{"CoGetObject", &lacks_elevation, as_procedure(&get_object)},
};

bool keep_loaded(HMODULE module) noexcept {
    HMODULE pinned = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                              reinterpret_cast<LPCWSTR>(module), &pinned);
}

}  // namespace

std::vector<std::string> supply(HMODULE module, std::span<const stand_in> stand_ins) {
    // The slots are given back at the end of the process, when the module must still be there.
    static std::vector<std::unique_ptr<test::import_slots>> replaced;
    std::vector<std::string> names;
    if (!keep_loaded(module)) {
        return names;
    }
    for (const stand_in& each : stand_ins) {
        if (test::imports(module, "*", each.function) && each.is_missing()) {
            replaced.push_back(
                std::make_unique<test::import_slots>(module, "*", each.function, each.replacement));
            names.emplace_back(each.function);
        }
    }
    return names;
}

std::vector<std::string> supply_missing(HMODULE module) {
    static std::map<HMODULE, std::vector<std::string>> supplied;
    const auto found = supplied.find(module);
    return found != supplied.end() ? found->second
                                   : supplied.emplace(module, supply(module, own_stand_ins)).first->second;
}

}  // namespace ov::stand_ins
