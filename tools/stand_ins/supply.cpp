#include "tools/stand_ins/supply.h"

#include <array>
#include <map>
#include <memory>

#include "testkit/imports/import_patch.h"
#include "tools/stand_ins/associations/associations.h"
#include "tools/stand_ins/items/data_object.h"
#include "tools/stand_ins/menus/default_context_menu.h"
#include "tools/stand_ins/associations/default_extract_icon.h"
#include "tools/stand_ins/elevation.h"
#include "tools/stand_ins/system.h"

namespace ov::stand_ins {

namespace {

struct supplied_function {
    const char* name;
    FARPROC replacement;
};

template <class Function>
FARPROC as_procedure(Function* function) noexcept {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

/// What Wine 8 lacks of the functions that shell extensions import.
const std::array supplied_functions = {
    supplied_function{"SHCreateDefaultExtractIcon", as_procedure(&create_default_extract_icon)},
    supplied_function{"AssocCreateForClasses", as_procedure(&create_associations)},
    supplied_function{"SHCreateDataObject", as_procedure(&create_data_object)},
    supplied_function{"SHCreateDefaultContextMenu", as_procedure(&create_default_context_menu)},
    supplied_function{"CoGetObject", as_procedure(&get_object)},
};

/// The replaced slots of one module.
struct supplied_module {
    std::vector<std::unique_ptr<test::import_slots>> slots;
    std::vector<std::string> names;
};

supplied_module supply(HMODULE module) {
    supplied_module made;
    for (const supplied_function& function : supplied_functions) {
        if (test::imports(module, "*", function.name)) {
            made.slots.push_back(
                std::make_unique<test::import_slots>(module, "*", function.name, function.replacement));
            made.names.emplace_back(function.name);
        }
    }
    return made;
}

}  // namespace

std::vector<std::string> supply_missing(HMODULE module) {
    if (!system_is_wine()) {
        return {};
    }
    // The slots are taken back at the end of the process, so the module must still be there.
    static std::map<HMODULE, supplied_module> supplied;
    const auto found = supplied.find(module);
    if (found != supplied.end()) {
        return found->second.names;
    }
    HMODULE pinned = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                            reinterpret_cast<LPCWSTR>(module), &pinned)) {
        return {};
    }
    return supplied.emplace(module, supply(module)).first->second.names;
}

}  // namespace ov::stand_ins
