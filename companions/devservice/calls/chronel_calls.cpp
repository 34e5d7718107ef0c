#include "companions/devservice/calls/call_context.h"
#include "companions/devservice/copies/chronels.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/messages/handover.h"
#include "companions/devservice/messages/request.h"

namespace ov::devservice {
namespace {

namespace fields = protocol::fields;

std::wstring temporary_folder() {
    wchar_t path[MAX_PATH + 1] = {};
    const DWORD length_chars = GetTempPathW(MAX_PATH + 1, path);
    return length_chars == 0 ? std::wstring() : clean_path(path).value_or(std::wstring());
}

}  // namespace

reply get_file_chronels(call_context& context, const json& parameters) {
    const std::optional<std::wstring> file = path_parameter(parameters, fields::file_name);
    if (!file) {
        return {.code = status::bad_request};
    }
    if (protection_of(context.store.state(), *file) == nullptr) {
        return {.code = status::not_protected};
    }
    return hand_over(parameters, chronel_list_text(chronels_of(context.store.state(), *file)));
}

reply restore_file_chronel(call_context& context, const json& parameters) {
    const std::optional<std::wstring> file = path_parameter(parameters, fields::file_name);
    const std::optional<std::wstring> clone = text_parameter(parameters, fields::clone_file_name);
    if (!file || !clone) {
        return {.code = status::bad_request};
    }
    return reply_for(restore_chronel(context.store, *file, to_utf8_lossy(*clone)));
}

reply open_file_chronel(call_context& context, const json& parameters) {
    const std::optional<std::wstring> file = path_parameter(parameters, fields::file_name);
    const std::optional<std::wstring> clone = text_parameter(parameters, fields::clone_file_name);
    const std::optional<std::wstring> wanted = text_parameter(parameters, fields::used_file_name);
    if (!file || !clone || !wanted) {
        return {.code = status::bad_request};
    }
    const std::wstring folder = temporary_folder();
    if (folder.empty()) {
        return {.code = status::failed};
    }
    std::wstring opened;
    const DWORD error =
        write_chronel_for_opening(context.store, *file, to_utf8_lossy(*clone), *wanted, folder, opened);
    if (error == ERROR_SUCCESS) {
        context.note("  " + to_utf8_lossy(opened));
        if (context.open_file) {
            context.open_file(opened);
        }
    }
    return reply_for(error);
}

}  // namespace ov::devservice
