#pragma once

#include <string>
#include <string_view>

#include "ovufc/ipc/drvport/wire.h"
#include "ovufc/owned_json.h"
#include "ovufc/protocol/service_calls.h"
#include "service/reply.h"

/// One service call: a compact JSON request, framed for the driver port, and the JSON reply.
///
/// Everything happens on the caller's thread with buffers of its own; `exchange` and `send` block it for as
/// long as the port waits. Only std::bad_alloc and, for a string that is not UTF-8, the library's type_error
/// get out.
namespace ov::service {

using protocol::service_call;

/// The text of a request: `{"parameters":{…},"serviceCall":N}`, no blanks, keys ascending, raw UTF-8.
/// `parameters` is an object, empty for a call without arguments.
[[nodiscard]] std::string request_text(service_call call, owned_json parameters);

/// The text behind the header that names process, thread and session. A text of more than 2047 bytes is cut
/// silently and is then no JSON to the driver: paths are the only values without a bound, and no call checks
/// them.
[[nodiscard]] orv_request frame_request(std::string_view text) noexcept;

/// Sends a request and reads its reply.
[[nodiscard]] reply exchange(service_call call, owned_json parameters);

/// Sends a request whose reply nobody reads; returns when it has come, or will not.
void send(service_call call, owned_json parameters);

}  // namespace ov::service
