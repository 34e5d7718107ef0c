#include "module/state/module_state.h"
#include "ovufc/com/guard.h"
#include "ovufc/dialog/dialog_records.h"
#include "ovufc/i18n/message_ids.h"
#include "service/calls.h"
#include "shell/command_offset.h"
#include "shell/file_menu/dialog_bridge.h"
#include "shell/file_menu/folder_commands.h"
#include "shell/file_menu/orvane_ctx_menu.h"
#include "shell/message_boxes.h"

// What the file and folder menu does when an item is picked. The driver reports the outcome of most of it
// itself: no message is shown for a call that failed.
namespace ov::shell {

namespace ids = i18n::message_ids;
using module_state::resource_strings;

STDMETHODIMP
OrvaneCtxMenu::InvokeCommand(CMINVOKECOMMANDINFO* info) noexcept {
    if (info == nullptr) {
        return E_INVALIDARG;
    }
    if (trackedFileMode) {
        // There is one command only: the verb is ignored.
        return com::guarded([&] { return show_chronels(); });
    }
    const auto offset = command_offset(info);
    if (!offset || folderPath.empty() || *offset >= commandMap.size()) {
        return E_INVALIDARG;
    }
    return com::guarded([&] { return run_folder_command(commandMap[*offset]); });
}

HRESULT OrvaneCtxMenu::run_folder_command(std::uint32_t command) const {
    switch (command) {
        case command_protect:
            return protect();
        case command_unprotect:
            return unprotect();
        case command_export_deleted_files:
        case command_export_chronels:
            if (exportsAvailable) {
                (void)service::export_folder(folderPath, command == command_export_chronels
                                                             ? service::export_kind::chronels
                                                             : service::export_kind::deleted_files);
            }
            return S_OK;
        default:
            return E_INVALIDARG;
    }
}

HRESULT OrvaneCtxMenu::protect() const {
    const protect_answer answer = show_protect_dialog(folderPath, showUnprotect);
    if (!answer.confirmed) {
        return S_OK;
    }
    return answer.object_path.empty() ? service::protect_folder(folderPath)
                                      : service::protect_folder_as(folderPath, answer.object_path);
}

HRESULT OrvaneCtxMenu::unprotect() const {
    if (unprotectBlocked) {
        show_box(resource_strings.lookup(ids::unprotect_blocked), box_style::refusal);
        return S_OK;
    }
    if (!confirmed(resource_strings.format(ids::ask_unprotect, folderPath.c_str()))) {
        return S_OK;
    }
    return service::unprotect_folder(folderPath);
}

HRESULT OrvaneCtxMenu::show_chronels() const {
    if (trackedFilePath.empty()) {
        return E_INVALIDARG;
    }
    const std::string chronel_list = service::get_file_chronels(trackedFilePath);
    if (chronel_list.empty()) {
        return E_UNEXPECTED;
    }
    chronel_dialog dialog;
    switch (dialog.show(menuIcon.get(), trackedFilePath, chronel_list)) {
        case chronel_dialog::outcome::not_shown:
            return S_OK;
        case chronel_dialog::outcome::no_answer:
            return E_UNEXPECTED;
        case chronel_dialog::outcome::answered:
            break;
    }
    switch (dialog.action()) {
        case dialog::chronel_action_open:
            service::open_file_chronel(trackedFilePath, dialog.chronel_identifier(), dialog.file_name());
            break;
        case dialog::chronel_action_restore:
        case dialog::chronel_action_restore_too:
            service::restore_file_chronel(trackedFilePath, dialog.chronel_identifier());
            break;
        default:
            break;
    }
    return S_OK;
}

}  // namespace ov::shell
