#include "companions/devservice/calls/dispatcher.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include "companions/devservice/calls/request.h"

namespace ov::devservice {
namespace {

struct service_call {
    std::int64_t number;
    const char* name;
    reply (*answer)(answering&, const json&);
};

constexpr service_call service_calls[] = {
    {3, "protect_folder", protect_folder},
    {13, "get_folder_status", get_folder_status},
    {14, "unprotect_folder", unprotect_folder},
    {28, "protect_folder_as", protect_folder_as},
    {35, "get_protected_folders", get_protected_folders},
    {36, "get_restore_points", get_restore_points},
    {37, "get_restore_folders", get_restore_folders},
    {39, "restore_from_point", restore_from_point},
    {42, "restore_file_chronel", restore_file_chronel},
    {44, "export_folder", export_folder},
    {45, "get_last_timestamp", get_last_timestamp},
    {46, "get_file_chronels", get_file_chronels},
    {47, "open_file_chronel", open_file_chronel},
};

reply answer_guarded(answering& context, const service_call& call, const json& parameters) {
    try {
        return call.answer(context, parameters);
    } catch (const std::exception& error) {  // memory, in practice: the service goes on with the next request
        context.note(std::string("  ") + error.what());
        return {.code = status::failed};
    }
}

}  // namespace

std::string answer_request(answering& context, std::string_view text) {
    const std::optional<request> call = read_request(text);
    if (!call) {
        context.note("no request -> 1");
        return reply_text({.code = status::bad_request});
    }
    const auto known =
        std::find_if(std::begin(service_calls), std::end(service_calls),
                     [&](const service_call& candidate) { return candidate.number == call->service_call; });
    if (known == std::end(service_calls)) {
        context.note("unknown call " + std::to_string(call->service_call) + " -> 2");
        return reply_text({.code = status::unknown_call});
    }
    const reply answer = answer_guarded(context, *known, call->parameters);
    context.note(std::string(known->name) + " -> " + std::to_string(static_cast<std::int64_t>(answer.code)));
    return reply_text(answer);
}

}  // namespace ov::devservice
