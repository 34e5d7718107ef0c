#include "companions/devservice/messages/handover.h"

#include <atomic>

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/messages/request.h"

namespace ov::devservice {
namespace {

std::wstring new_name() {
    static std::atomic<unsigned> count = 0;
    return L"orvane-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(GetTickCount64()) +
           L"-" + std::to_wstring(++count) + L".json";
}

}  // namespace

reply hand_over(const json& parameters, const std::string& text) {
    const std::optional<std::wstring> folder = path_parameter(parameters, protocol::fields::temp_folder);
    if (!folder) {
        return {.code = status::bad_request};
    }
    if (!is_plain_folder(*folder)) {
        return {.code = status::not_found};
    }
    const std::wstring file = joined(*folder, new_name());
    if (const DWORD error = write_new_file(file, text); error != ERROR_SUCCESS) {
        return reply_for(error);
    }
    reply answer;
    answer.data[protocol::fields::object_path] = to_utf8_lossy(file);
    return answer;
}

}  // namespace ov::devservice
