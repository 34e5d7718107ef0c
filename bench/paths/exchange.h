#pragma once

#include <array>
#include <cstdint>

#include "ovufc/ipc/drvport/client_port.h"

namespace ov::bench {

/// One exchange of an empty request; false when no reply came.
[[nodiscard]] inline bool exchange(ipc::drvport::details::client_port& port) {
    static orv_request request{};
    std::array<char, ORV_REPLY_LIMIT_BYTES> reply{};
    std::uint32_t reply_bytes = 0;
    return port.transact(request, reply.data(), reply_bytes);
}

}  // namespace ov::bench
