#include <optional>

#include "companions/devservice/calls/call_context.h"
#include "companions/devservice/files/json_text.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/messages/handover.h"
#include "companions/devservice/messages/request.h"
#include "companions/devservice/roll_back/roll_back.h"

namespace ov::devservice {
namespace {

namespace fields = protocol::fields;

struct point_identity {
    std::int64_t created_on = 0;
    std::int64_t sequence_number = 0;
};

std::optional<point_identity> identity_from(const json& parameters) {
    const std::optional<std::int64_t> created_on = integer_parameter(parameters, fields::created_on);
    const std::optional<std::int64_t> sequence_number =
        integer_parameter(parameters, fields::sequence_number);
    if (!created_on || !sequence_number) {
        return std::nullopt;
    }
    return point_identity{*created_on, *sequence_number};
}

}  // namespace

reply get_restore_points(call_context& context, const json&) {
    json points = json::array();
    const std::vector<stored_copy>& copies = context.store.state().copies;
    for (auto copy = copies.rbegin(); copy != copies.rend(); ++copy) {
        if (copy->kind == copy_kind::restore_point) {
            points.push_back({{fields::created_on, copy->taken_on}, {fields::sequence_number, copy->number}});
        }
    }
    reply answer;
    answer.data[fields::restore_points] = std::move(points);
    return answer;
}

reply get_restore_folders(call_context& context, const json& parameters) {
    const std::optional<point_identity> wanted = identity_from(parameters);
    if (!wanted) {
        return {.code = status::bad_request};
    }
    const service_state& state = context.store.state();
    const stored_copy* point = find_restore_point(state, wanted->created_on, wanted->sequence_number);
    if (point == nullptr) {
        return {.code = status::not_found};
    }
    json folders = json::array();
    for (const std::wstring& folder : restorable_folders(state, *point)) {
        folders.push_back(to_utf8_lossy(folder));
    }
    return hand_over(parameters, to_text({{fields::restore_folders, std::move(folders)}}));
}

reply restore_from_point(call_context& context, const json& parameters) {
    const std::optional<point_identity> wanted = identity_from(parameters);
    if (!wanted) {
        return {.code = status::bad_request};
    }
    roll_back_result result;
    const DWORD error = context.store.change([&](service_state& state) -> DWORD {
        const stored_copy* point = find_restore_point(state, wanted->created_on, wanted->sequence_number);
        if (point == nullptr) {
            return ERROR_NOT_FOUND;
        }
        result = roll_back(context.store, state, *point);
        return ERROR_SUCCESS;
    });
    if (error != ERROR_SUCCESS) {
        return reply_for(error);
    }
    context.note("  " + std::to_string(result.restored) + " files restored, " +
                 std::to_string(result.untouched) + " as they were, " + std::to_string(result.moved_aside) +
                 " moved to " + to_utf8_lossy(result.aside));
    context.note(result.failed);
    reply answer{.code = result.failed.empty() ? status::done : status::incomplete};
    answer.data["restored"] = result.restored;
    answer.data["movedAside"] = result.moved_aside;
    answer.data["failed"] = result.failed.size();
    return answer;
}

reply get_last_timestamp(call_context& context, const json&) {
    const std::vector<stored_copy>& copies = context.store.state().copies;
    if (copies.empty()) {
        return {};
    }
    reply answer{.code = status::timestamp_present};
    answer.data[fields::last_timestamp] = copies.back().taken_on;
    return answer;
}

}  // namespace ov::devservice
