#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ovufc/json.h"

namespace ov::devservice {

/// A service call as it arrived. Clients are not trusted: a text of another shape is not a request.
struct request {
    std::int64_t service_call = 0;
    json parameters;  // an object
};

/// `text` is taken up to its first NUL.
[[nodiscard]] std::optional<request> read_request(std::string_view text);

/// A string parameter; none when it is absent, no string, not UTF-8, or holds a NUL.
[[nodiscard]] std::optional<std::wstring> text_parameter(const json& parameters, const char* name);

/// A string parameter that is a path, in its clean form.
[[nodiscard]] std::optional<std::wstring> path_parameter(const json& parameters, const char* name);

/// A number parameter.
[[nodiscard]] std::optional<std::int64_t> integer_parameter(const json& parameters, const char* name);

}  // namespace ov::devservice
