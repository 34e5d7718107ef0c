#include "tools/stand_ins/menus/handler_sources.h"

#include <shlobj.h>

#include <memory>

#include "ovufc/com/task_memory.h"

namespace ov::stand_ins {

namespace {

/// What all sources of one selection share.
struct selection_context {
    com::unique_absolute_id_list folder;
    Microsoft::WRL::ComPtr<IDataObject> selection;
    std::vector<unique_registry_key> class_keys;
};

}  // namespace

std::vector<menu_source> sources_of_handlers(std::vector<unique_registry_key> class_keys,
                                             PCIDLIST_ABSOLUTE folder, IDataObject* selection) {
    std::vector<registered_handler> handlers;
    for (const unique_registry_key& key : class_keys) {
        add_handlers_of_class(key.get(), handlers);
    }
    const auto context = std::make_shared<selection_context>();
    context->folder.reset(folder != nullptr ? ILCloneFull(folder) : nullptr);
    context->selection = selection;
    context->class_keys = std::move(class_keys);

    std::vector<menu_source> sources;
    for (registered_handler& handler : handlers) {
        menu_source& source = sources.emplace_back();
        source.name = handler.name;
        source.serves_default = handler.may_change_default;
        source.open = [context, handler = std::move(handler)](IContextMenu** menu) {
            return open_handler(handler, context->folder.get(), context->selection.Get(),
                                context->class_keys.front().get(), menu);
        };
    }
    return sources;
}

}  // namespace ov::stand_ins
