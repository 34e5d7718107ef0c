#pragma once

#include <string>

#include "ovufc/json.h"

namespace ov::devservice {

/// The value as text: UTF-8 unescaped, compact, or indented when `indent` is not negative. What is not UTF-8
/// becomes a replacement character in place of an exception.
[[nodiscard]] inline std::string to_text(const json& value, int indent = -1) {
    return value.dump(indent, ' ', false, json::error_handler_t::replace);
}

}  // namespace ov::devservice
