#include "service/envelope.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "module/state/module_state.h"
#include "ovufc/ipc/drvport/client.h"

namespace ov::service {
namespace {

namespace drvport = ipc::drvport;

struct reply_buffer {
    char bytes[ORV_REPLY_LIMIT_BYTES] = {};
    std::uint32_t filled_bytes = 0;
};

bool transact(service_call call, owned_json parameters, reply_buffer& answer) {
    const orv_request request = frame_request(request_text(call, std::move(parameters)));
    return drvport::transact(request, answer.bytes, answer.filled_bytes);
}

}  // namespace

std::string request_text(service_call call, owned_json parameters) {
    owned_json request = json::object();
    request.set(protocol::fields::parameters, std::move(parameters.value));
    request.set(protocol::fields::service_call, static_cast<std::int64_t>(call));
    // Strict: bytes that are not UTF-8 end the call rather than reach the driver as something else. Converted
    // and parsed texts are always UTF-8, so this is a second check.
    return request.value.dump(-1, ' ', false, json::error_handler_t::strict);
}

orv_request frame_request(std::string_view text) noexcept {
    orv_request request{};
    request.process_id = module_state::current_process_id;
    request.thread_id = GetCurrentThreadId();
    request.session_id = module_state::current_session_id;
    // The last byte stays NUL.
    text.substr(0, sizeof(request.text) - 1).copy(request.text, sizeof(request.text) - 1);
    return request;
}

reply exchange(service_call call, owned_json parameters) {
    reply_buffer answer;
    if (!transact(call, std::move(parameters), answer)) {
        return reply::failed(reply::transact_failed);
    }
    return reply::parse(answer.bytes, std::min<std::size_t>(answer.filled_bytes, sizeof(answer.bytes)));
}

void send(service_call call, owned_json parameters) {
    reply_buffer unread;
    static_cast<void>(transact(call, std::move(parameters), unread));
}

}  // namespace ov::service
