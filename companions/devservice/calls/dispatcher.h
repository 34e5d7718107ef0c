#pragma once

#include <string>
#include <string_view>

#include "companions/devservice/calls/call_context.h"

namespace ov::devservice {

/// Answers one service call: request text in, reply text out. Whatever the text holds there is a reply, at
/// most as long as clients read; a request that makes no sense gets a non-zero status.
[[nodiscard]] std::string answer_request(call_context& context, std::string_view text);

}  // namespace ov::devservice
