#include "companions/devservice/calls/dispatcher.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include "companions/devservice/messages/request.h"
#include "ovufc/protocol/service_calls.h"

namespace ov::devservice {
namespace {

using protocol::service_call;

struct call_row {
    service_call number;
    const char* name;
    reply (*answer)(call_context&, const json&);
};

constexpr call_row service_calls[] = {
    {service_call::protect_folder, "protect_folder", protect_folder},
    {service_call::get_folder_status, "get_folder_status", get_folder_status},
    {service_call::unprotect_folder, "unprotect_folder", unprotect_folder},
    {service_call::protect_folder_as, "protect_folder_as", protect_folder_as},
    {service_call::get_protected_folders, "get_protected_folders", get_protected_folders},
    {service_call::get_restore_points, "get_restore_points", get_restore_points},
    {service_call::get_restore_folders, "get_restore_folders", get_restore_folders},
    {service_call::restore_from_point, "restore_from_point", restore_from_point},
    {service_call::restore_file_chronel, "restore_file_chronel", restore_file_chronel},
    {service_call::export_folder, "export_folder", export_folder},
    {service_call::get_last_timestamp, "get_last_timestamp", get_last_timestamp},
    {service_call::get_file_chronels, "get_file_chronels", get_file_chronels},
    {service_call::open_file_chronel, "open_file_chronel", open_file_chronel},
};

reply answer_guarded(call_context& context, const call_row& call, const json& parameters) {
    try {
        return call.answer(context, parameters);
    } catch (const std::exception& error) {  // memory, in practice: the service goes on with the next request
        context.note(std::string("  ") + error.what());
        return {.code = status::failed};
    }
}

}  // namespace

std::string answer_request(call_context& context, std::string_view text) {
    const std::optional<request> call = read_request(text);
    if (!call) {
        context.note("no request -> 1");
        return reply_text({.code = status::bad_request});
    }
    const auto known =
        std::find_if(std::begin(service_calls), std::end(service_calls), [&](const call_row& candidate) {
            return static_cast<std::int64_t>(candidate.number) == call->service_call;
        });
    if (known == std::end(service_calls)) {
        context.note("unknown call " + std::to_string(call->service_call) + " -> 2");
        return reply_text({.code = status::unknown_call});
    }
    const reply answer = answer_guarded(context, *known, call->parameters);
    context.note(std::string(known->name) + " -> " + std::to_string(static_cast<std::int64_t>(answer.code)));
    return reply_text(answer);
}

}  // namespace ov::devservice
