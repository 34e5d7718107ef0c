#include "companions/devservice/messages/reply.h"

#include "companions/devservice/files/json_text.h"
#include "ovufc/ipc/drvport/wire.h"

namespace ov::devservice {

status status_of(DWORD error) noexcept {
    switch (error) {
        case ERROR_SUCCESS:
            return status::done;
        case ERROR_NOT_FOUND:
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return status::not_found;
        case ERROR_ACCESS_DENIED:
            return status::refused;
        default:
            return status::failed;
    }
}

reply reply_for(DWORD error) {
    reply answer{.code = status_of(error)};
    if (error != ERROR_SUCCESS) {
        answer.data["error"] = error;
    }
    return answer;
}

std::string reply_text(const reply& answer) {
    const json whole = {{protocol::fields::data, answer.data},
                        {protocol::fields::status_code, static_cast<std::int64_t>(answer.code)}};
    std::string text = to_text(whole);
    if (text.size() > ORV_REPLY_LIMIT_BYTES) {
        return reply_text({.code = status::failed});
    }
    return text;
}

}  // namespace ov::devservice
