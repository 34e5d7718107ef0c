#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "ovufc/ipc/drvport/client_port.h"

namespace ov::test {

/// A request as the service calls make it: header of this thread, text cut to 2047 bytes.
inline orv_request request_with(std::string_view text) {
    orv_request request{};
    request.process_id = GetCurrentProcessId();
    request.thread_id = GetCurrentThreadId();
    ProcessIdToSessionId(request.process_id, reinterpret_cast<DWORD*>(&request.session_id));
    std::memcpy(request.text, text.data(), std::min<std::size_t>(text.size(), ORV_REQUEST_TEXT_BYTES - 1));
    return request;
}

/// What `transact` gave for one request.
struct exchange_result {
    bool ok = false;
    std::uint32_t reply_bytes = 0xAAAAAAAA;  // as it was when the call left it alone
    std::string reply;                       // the whole buffer when the length is out of bounds
};

inline exchange_result ask(ipc::drvport::details::client_port& port, std::string_view text) {
    // What follows the buffer must survive.
    std::array<char, ORV_REPLY_LIMIT_BYTES + 64> buffer{};
    std::fill(buffer.begin() + ORV_REPLY_LIMIT_BYTES, buffer.end(), '!');
    exchange_result result;
    result.ok = port.transact(request_with(text), buffer.data(), result.reply_bytes);
    if (!std::all_of(buffer.begin() + ORV_REPLY_LIMIT_BYTES, buffer.end(), [](char c) { return c == '!'; })) {
        result.reply = "the reply was written beyond its buffer";
    } else if (result.ok) {
        result.reply.assign(buffer.data(), std::min(result.reply_bytes, ORV_REPLY_LIMIT_BYTES));
    }
    return result;
}

}  // namespace ov::test
