#include "companions/devservice/messages/request.h"

#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "ovufc/json_bounded.h"
#include "ovufc/json_members.h"
#include "ovufc/protocol/service_calls.h"

namespace ov::devservice {

std::optional<request> read_request(std::string_view text) {
    const json root = parse_bounded(text.substr(0, text.find('\0')));
    const json* call = find_member(root, protocol::fields::service_call);
    const json* parameters = find_member(root, protocol::fields::parameters);
    if (call == nullptr || !call->is_number_integer() || parameters == nullptr || !parameters->is_object()) {
        return std::nullopt;
    }
    const std::optional<std::int64_t> number = as_integer(*call);
    if (!number) {
        return std::nullopt;
    }
    return request{.service_call = *number, .parameters = *parameters};
}

std::optional<std::wstring> text_parameter(const json& parameters, const char* name) {
    const json* value = find_member(parameters, name);
    const std::string* narrow = value == nullptr ? nullptr : as_text(*value);
    if (narrow == nullptr || narrow->find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return from_utf8(*narrow);
}

std::optional<std::wstring> path_parameter(const json& parameters, const char* name) {
    const std::optional<std::wstring> text = text_parameter(parameters, name);
    return text ? clean_path(*text) : std::nullopt;
}

std::optional<std::int64_t> integer_parameter(const json& parameters, const char* name) {
    const json* value = find_member(parameters, name);
    return value == nullptr ? std::nullopt : as_integer(*value);
}

}  // namespace ov::devservice
