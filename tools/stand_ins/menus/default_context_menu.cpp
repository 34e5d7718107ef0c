#include "tools/stand_ins/menus/default_context_menu.h"

#include <shlwapi.h>
#include <wrl/client.h>

#include <memory>

#include "ovufc/com/guard.h"
#include "tools/stand_ins/associations/association_keys.h"
#include "tools/stand_ins/items/interface_ids.h"
#include "tools/stand_ins/items/item_paths.h"
#include "tools/stand_ins/menus/handler_sources.h"
#include "tools/stand_ins/menus/open_folder_menu.h"

namespace ov::stand_ins {

namespace {

using Microsoft::WRL::ComPtr;

std::vector<unique_registry_key> class_keys_of_selection(const DEFCONTEXTMENU& description) {
    std::vector<unique_registry_key> keys;
    if (description.cKeys != 0) {
        for (UINT i = 0; i < description.cKeys; ++i) {
            keys.push_back(duplicate_key(description.aKeys[i]));
        }
        return keys;
    }
    if (description.punkAssociationInfo != nullptr) {
        return class_keys_of(description.punkAssociationInfo);
    }
    ComPtr<IQueryAssociations> associations;
    if (SUCCEEDED(description.psf->GetUIObjectOf(description.hwnd, 1, description.apidl,
                                                 __uuidof(IQueryAssociations), nullptr,
                                                 reinterpret_cast<void**>(associations.GetAddressOf()))) &&
        associations != nullptr) {
        keys = class_keys_of(associations.Get());
    }
    return keys;
}

/// The folder's own list: as given, or as the folder itself knows it.
com::unique_absolute_id_list folder_list_of(const DEFCONTEXTMENU& description) {
    if (description.pidlFolder != nullptr) {
        return com::unique_absolute_id_list(ILCloneFull(description.pidlFolder));
    }
    PIDLIST_ABSOLUTE list = nullptr;
    ComPtr<IPersistFolder2> persist;
    if (SUCCEEDED(description.psf->QueryInterface(IID_PPV_ARGS(persist.GetAddressOf())))) {
        (void)persist->GetCurFolder(&list);
    }
    return com::unique_absolute_id_list(list);
}

menu_source open_source(PCIDLIST_ABSOLUTE folder, PCUITEMID_CHILD item) {
    const std::shared_ptr<ITEMIDLIST_ABSOLUTE> target(ILCombine(folder, item), com::task_memory_deleter{});
    menu_source source;
    source.name = L"folder";
    source.serves_default = true;
    source.open = [target](IContextMenu** menu) { return make_open_folder_menu(target.get(), menu); };
    return source;
}

HRESULT build(const DEFCONTEXTMENU& description, REFIID riid, void** result) {
    ComPtr<IDataObject> selection;
    // A folder may have no data object for its items; handlers then get none, as they would on Windows.
    (void)description.psf->GetUIObjectOf(description.hwnd, description.cidl, description.apidl,
                                         __uuidof(IDataObject), nullptr,
                                         reinterpret_cast<void**>(selection.GetAddressOf()));
    const com::unique_absolute_id_list folder = folder_list_of(description);
    std::vector<menu_source> sources;
    if (folder != nullptr && description.cidl == 1 &&
        attributes_of_item(description.psf, description.apidl[0], SFGAO_FOLDER) != 0) {
        sources.push_back(open_source(folder.get(), description.apidl[0]));
    }
    for (menu_source& source :
         sources_of_handlers(class_keys_of_selection(description), folder.get(), selection.Get())) {
        sources.push_back(std::move(source));
    }
    return make_merged_menu(std::move(sources), riid, result);
}

}  // namespace

STDAPI create_default_context_menu(const DEFCONTEXTMENU* description, REFIID riid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    if (description == nullptr || description->psf == nullptr || description->cidl == 0 ||
        description->apidl == nullptr || (description->cKeys != 0 && description->aKeys == nullptr)) {
        return E_INVALIDARG;
    }
    return com::guarded([&] { return build(*description, riid, result); });
}

}  // namespace ov::stand_ins
