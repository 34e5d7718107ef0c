#include "service/reply_readers.h"

#include <string_view>

#include "ovufc/json_bounded.h"
#include "ovufc/json_members.h"
#include "ovufc/owned_json.h"
#include "ovufc/protocol/service_calls.h"
#include "service/text.h"

namespace ov::service {
namespace {

namespace fields = protocol::fields;
using protocol::status_success;
using protocol::status_timestamp_present;

/// Null when the call did not succeed or has no "data", which every call but one needs, even one that reads
/// nothing of it. Looking has no effect, so which of the two is missing makes no difference to anybody.
const json* data_of_success(const reply& answer, std::int64_t success) noexcept {
    return answer.status() == success ? answer.data() : nullptr;
}

std::optional<std::int64_t> integer_member(const json& value, std::string_view key) noexcept {
    const json* const member = find_member(value, key);
    return member == nullptr ? std::nullopt : as_integer(*member);
}

}  // namespace

HRESULT read_outcome(const reply& answer) noexcept {
    return data_of_success(answer, status_success) == nullptr ? E_UNEXPECTED : S_OK;
}

bool read_folder_status(const reply& answer, bool& is_protected, bool& restricted) noexcept {
    const json* const data = data_of_success(answer, status_success);
    const json* const protected_folder =
        data == nullptr ? nullptr : find_member(*data, fields::protected_folder);
    if (protected_folder == nullptr || !protected_folder->is_boolean()) {
        return false;
    }
    is_protected = *protected_folder->get_ptr<const json::boolean_t*>();
    const json* const ui_level = find_member(*data, fields::ui_level);
    if (ui_level == nullptr) {
        return true;
    }
    const std::string* const level = as_text(*ui_level);
    if (level == nullptr) {
        return false;
    }
    restricted = *level == protocol::ui_level_restricted;
    return true;
}

std::optional<std::wstring> read_file_path(const reply& answer) {
    const json* const data = data_of_success(answer, status_success);
    const json* const path = data == nullptr ? nullptr : find_member(*data, fields::object_path);
    const std::string* const text = path == nullptr ? nullptr : as_text(*path);
    return text == nullptr ? std::nullopt : std::optional(from_utf8(*text));
}

std::vector<std::wstring> read_restore_folders(const std::string& file_text) {
    const owned_json document = parse_bounded(file_text);
    const json* const listed = find_member(document.value, fields::restore_folders);
    if (listed == nullptr || !listed->is_array()) {
        return {};
    }
    std::vector<std::wstring> folders;
    folders.reserve(listed->size());
    for (const json& entry : *listed) {
        const std::string* const path = as_text(entry);
        if (path == nullptr) {
            return {};
        }
        folders.push_back(from_utf8(*path));
    }
    return folders;
}

bool read_restore_point(const reply& answer, std::int64_t& createdOn, std::int64_t& sequenceNumber) noexcept {
    const json* const data = data_of_success(answer, status_success);
    const json* const points = data == nullptr ? nullptr : find_member(*data, fields::restore_points);
    const auto* const listed = points == nullptr ? nullptr : points->get_ptr<const json::array_t*>();
    if (listed == nullptr || listed->empty()) {
        return false;
    }
    const json& first = listed->front();
    const auto created = integer_member(first, fields::created_on);
    const auto sequence = integer_member(first, fields::sequence_number);
    if (!created || !sequence) {
        return false;
    }
    createdOn = *created;
    sequenceNumber = *sequence;
    return true;
}

bool read_restore_refused(const reply& answer) noexcept {
    return answer.status().value_or(status_success) != status_success;
}

std::optional<std::uint64_t> read_last_timestamp(const reply& answer) noexcept {
    const json* const data = data_of_success(answer, status_timestamp_present);
    const auto timestamp = data == nullptr ? std::nullopt : integer_member(*data, fields::last_timestamp);
    if (!timestamp) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(*timestamp);
}

}  // namespace ov::service
