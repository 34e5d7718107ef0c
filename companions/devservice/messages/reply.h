#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "ovufc/json.h"
#include "ovufc/protocol/service_calls.h"

namespace ov::devservice {

/// Values of "statusCode". Clients tell only the first two; the rest is for people who read the log.
enum class status : std::int64_t {
    timestamp_present = protocol::status_timestamp_present,
    done = protocol::status_success,
    bad_request = 1,    // not JSON, or a parameter is missing or of the wrong shape
    unknown_call = 2,   // no such number
    not_protected = 3,  // the path is in no protected folder
    not_found = 4,      // no such folder, version or restore point
    incomplete = 5,     // done but for some files, which are in the log
    refused = 6,        // the flags, or the place of the folder, forbid it
    failed = 7,         // Windows said no, or another process kept the state for a minute
};

struct reply {
    status code = status::done;
    json data = json::object();
};

/// The status that fits a Windows error code.
[[nodiscard]] status status_of(DWORD error) noexcept;

/// A reply that says how an operation ended.
[[nodiscard]] reply reply_for(DWORD error);

/// {"data":…,"statusCode":…}. A reply that clients would cut, and could then not parse, becomes a failure
/// without data.
[[nodiscard]] std::string reply_text(const reply& answer);

}  // namespace ov::devservice
