#include "service/calls.h"

#include <utility>

#include "ovufc/ipc/drvport/client.h"
#include "ovufc/json_bounded.h"
#include "ovufc/owned_json.h"
#include "ovufc/protocol/service_calls.h"
#include "service/envelope.h"
#include "service/file_exchange.h"
#include "service/reply_readers.h"
#include "service/text.h"

namespace ov::service {
namespace {

namespace drvport = ipc::drvport;
namespace fields = protocol::fields;

/// Runs the body of a call. Expected failures are return values; what is still thrown (no memory, in the
/// main) ends the body where it stands, and the call keeps the result that it has by then.
template <class Body>
void attempt(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {
    }
}

/// Whatever the driver is asked with: named values, brought into ascending order by the object itself.
owned_json no_parameters() {
    return json::object();
}

owned_json folder_parameters(const std::wstring& folder_path) {
    owned_json parameters = json::object();
    parameters.set(fields::folder_name, to_utf8(folder_path));
    return parameters;
}

owned_json file_parameters(const std::wstring& file_path) {
    owned_json parameters = json::object();
    parameters.set(fields::file_name, to_utf8(file_path));
    return parameters;
}

owned_json restore_point_parameters(std::int64_t createdOn, std::int64_t sequenceNumber) {
    owned_json parameters = json::object();
    parameters.set(fields::created_on, createdOn);
    parameters.set(fields::sequence_number, sequenceNumber);
    return parameters;
}

const char* export_type(export_kind kind) noexcept {
    return kind == export_kind::deleted_files ? protocol::export_deleted_files : protocol::export_chronels;
}

HRESULT outcome_of(service_call call, owned_json parameters) {
    return read_outcome(exchange(call, std::move(parameters)));
}

/// For calls that are answered with a file: names the folder, then takes the file that the reply names.
std::string file_answering(service_call call, owned_json parameters) {
    parameters.set(fields::temp_folder, to_utf8(temp_folder()));
    const auto path = read_file_path(exchange(call, std::move(parameters)));
    return path ? take_driver_file(*path) : std::string();
}

/// The member as it stands, null when the record lacks it. Each is asked for once: it is moved, not copied.
owned_json taken(owned_json& record, const char* key) {
    const auto found = record.value.find(key);
    return found == record.value.end() ? json() : std::move(*found);
}

/// Both chronel commands. A record that is JSON but no object names no chronel: nothing is sent.
void send_chronel(service_call call, const std::wstring& file_path, owned_json& record,
                  owned_json used_file_name) {
    if (!record.value.is_object()) {
        return;
    }
    owned_json parameters = file_parameters(file_path);
    parameters.set(fields::used_file_name, std::move(used_file_name.value));
    parameters.set(fields::clone_file_name, taken(record, fields::clone_file_name).value);
    parameters.set(fields::chronel_type, taken(record, fields::type).value);
    send(call, std::move(parameters));
}

}  // namespace

bool get_folder_status(const std::wstring& folder_path, bool& restricted, bool& exports_available) noexcept {
    bool is_protected = false;
    attempt([&] {
        const reply answer = exchange(service_call::get_folder_status, folder_parameters(folder_path));
        if (read_folder_status(answer, is_protected, restricted) && drvport::connect() &&
            (drvport::flags() & ORV_FLAG_EXPORTS_AVAILABLE) != 0) {
            exports_available = true;
        }
    });
    return is_protected;
}

HRESULT protect_folder(const std::wstring& folder_path) noexcept {
    HRESULT result = E_UNEXPECTED;
    attempt([&] { result = outcome_of(service_call::protect_folder, folder_parameters(folder_path)); });
    return result;
}

HRESULT protect_folder_as(const std::wstring& folder_path, const std::wstring& object_path) noexcept {
    HRESULT result = E_UNEXPECTED;
    attempt([&] {
        owned_json parameters = folder_parameters(folder_path);
        parameters.set(fields::object_path, to_utf8(object_path));
        result = outcome_of(service_call::protect_folder_as, std::move(parameters));
    });
    return result;
}

HRESULT unprotect_folder(const std::wstring& folder_path) noexcept {
    HRESULT result = E_UNEXPECTED;
    attempt([&] { result = outcome_of(service_call::unprotect_folder, folder_parameters(folder_path)); });
    return result;
}

HRESULT export_folder(const std::wstring& folder_path, export_kind kind) noexcept {
    HRESULT result = E_UNEXPECTED;
    attempt([&] {
        owned_json parameters = folder_parameters(folder_path);
        parameters.set(fields::export_type, export_type(kind));
        result = outcome_of(service_call::export_folder, std::move(parameters));
    });
    return result;
}

std::string get_file_chronels(const std::wstring& file_path) noexcept {
    std::string list;
    attempt([&] { list = file_answering(service_call::get_file_chronels, file_parameters(file_path)); });
    return list;
}

void restore_file_chronel(const std::wstring& file_path, const std::string& chronel_identifier) {
    owned_json record = parse_bounded_or_throw(chronel_identifier);
    attempt([&] {
        send_chronel(service_call::restore_file_chronel, file_path, record, taken(record, fields::file_name));
    });
}

void open_file_chronel(const std::wstring& file_path, const std::string& chronel_identifier,
                       const std::wstring& file_name) {
    owned_json record = parse_bounded_or_throw(chronel_identifier);
    attempt(
        [&] { send_chronel(service_call::open_file_chronel, file_path, record, json(to_utf8(file_name))); });
}

bool get_restore_points(std::int64_t& createdOn, std::int64_t& sequenceNumber) noexcept {
    bool found = false;
    attempt([&] {
        const reply answer = exchange(service_call::get_restore_points, no_parameters());
        found = read_restore_point(answer, createdOn, sequenceNumber);
    });
    return found;
}

std::vector<std::wstring> get_restore_folders(std::int64_t createdOn, std::int64_t sequenceNumber) noexcept {
    std::vector<std::wstring> folders;
    attempt([&] {
        owned_json parameters = restore_point_parameters(createdOn, sequenceNumber);
        folders =
            read_restore_folders(file_answering(service_call::get_restore_folders, std::move(parameters)));
    });
    return folders;
}

bool restore_from_point(std::int64_t createdOn, std::int64_t sequenceNumber) noexcept {
    bool restored = true;
    attempt([&] {
        owned_json parameters = restore_point_parameters(createdOn, sequenceNumber);
        restored = !read_restore_refused(exchange(service_call::restore_from_point, std::move(parameters)));
    });
    return restored;
}

std::optional<std::uint64_t> get_last_timestamp() noexcept {
    std::optional<std::uint64_t> timestamp;
    attempt([&] {
        timestamp = read_last_timestamp(exchange(service_call::get_last_timestamp, no_parameters()));
    });
    return timestamp;
}

std::string get_protected_folders() noexcept {
    std::string document;
    attempt([&] { document = file_answering(service_call::get_protected_folders, no_parameters()); });
    return document;
}

}  // namespace ov::service
