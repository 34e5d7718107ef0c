#include "companions/devservice/calls/call_context.h"
#include "companions/devservice/calls/document.h"
#include "companions/devservice/copies/take_copy.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/messages/handover.h"
#include "companions/devservice/messages/request.h"
#include "companions/devservice/roll_back/exports.h"
#include "ovufc/com/known_folder.h"
#include "ovufc/ipc/drvport/wire.h"
#include "ovufc/json_members.h"

namespace ov::devservice {
namespace {

namespace fields = protocol::fields;

bool flag_is_set(const call_context& context, std::uint32_t flag) {
    return (context.store.state().flags & flag) != 0;
}

reply protect_and_answer(call_context& context, const std::optional<std::wstring>& folder,
                         const std::optional<std::wstring>& object_path) {
    if (!folder || !object_path) {
        return {.code = status::bad_request};
    }
    problems left_out;
    const DWORD error = protect(context.store, *folder, *object_path, left_out);
    context.note(left_out);
    reply answer = reply_for(error);
    if (error == ERROR_SUCCESS) {
        // The folder is protected all the same: what is in use now is taken by the next restore point.
        answer.data["leftOut"] = left_out.size();
    }
    return answer;
}

std::wstring own_desktop() {
    return clean_path(com::known_folder_path(FOLDERID_Desktop)).value_or(std::wstring());
}

}  // namespace

reply get_folder_status(call_context& context, const json& parameters) {
    const std::optional<std::wstring> folder = path_parameter(parameters, fields::folder_name);
    if (!folder) {
        return {.code = status::bad_request};
    }
    reply answer;
    answer.data[fields::protected_folder] = counts_as_protected(context.store.state(), *folder);
    answer.data[fields::ui_level] =
        flag_is_set(context, ORV_FLAG_UI_RESTRICTED) ? protocol::ui_level_restricted : "full";
    return answer;
}

reply protect_folder(call_context& context, const json& parameters) {
    return protect_and_answer(context, path_parameter(parameters, fields::folder_name), std::wstring());
}

reply protect_folder_as(call_context& context, const json& parameters) {
    return protect_and_answer(context, path_parameter(parameters, fields::folder_name),
                              text_parameter(parameters, fields::object_path));
}

reply unprotect_folder(call_context& context, const json& parameters) {
    const std::optional<std::wstring> folder = path_parameter(parameters, fields::folder_name);
    if (!folder) {
        return {.code = status::bad_request};
    }
    if (flag_is_set(context, ORV_FLAG_UNPROTECT_BLOCKED)) {
        return {.code = status::refused};
    }
    return reply_for(unprotect(context.store, *folder));
}

reply export_folder(call_context& context, const json& parameters) {
    const std::optional<std::wstring> folder = path_parameter(parameters, fields::folder_name);
    const json* const type_member = find_member(parameters, fields::export_type);
    const std::string* const type = type_member == nullptr ? nullptr : as_text(*type_member);
    if (!folder || type == nullptr ||
        (*type != protocol::export_deleted_files && *type != protocol::export_chronels)) {
        return {.code = status::bad_request};
    }
    if (!flag_is_set(context, ORV_FLAG_EXPORTS_AVAILABLE)) {
        return {.code = status::refused};
    }
    if (protection_of(context.store.state(), *folder) == nullptr) {
        return {.code = status::not_protected};
    }
    const std::wstring desktop = context.desktop.empty() ? own_desktop() : context.desktop;
    if (desktop.empty()) {
        return {.code = status::failed};
    }
    const export_result result = *type == protocol::export_chronels
                                     ? export_chronels(context.store, *folder, desktop)
                                     : export_deleted_files(context.store, *folder, desktop);
    context.note("  " + std::to_string(result.files) + " files into " + to_utf8_lossy(result.folder));
    context.note(result.failed);
    reply answer{.code = result.failed.empty() ? status::done : status::incomplete};
    answer.data["files"] = result.files;
    return answer;
}

reply get_protected_folders(call_context& context, const json& parameters) {
    const std::optional<std::string> text = protected_locations(context.store);
    return text ? hand_over(parameters, *text) : reply{.code = status::failed};
}

}  // namespace ov::devservice
