#include "testkit/service/document_service.h"

#include "ovufc/json_bounded.h"
#include "ovufc/protocol/service_calls.h"
#include "ovufc/win/utf8.h"

namespace ov::test {

namespace {

void write_file(const std::wstring& path, const std::string& content) {
    const win::unique_file file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
}

}  // namespace

document_service::document_service()
    : service_([this](const scripted_request& request) { return answer(request); }) {}

void document_service::publish(const std::string& document) {
    const win::exclusive_lock lock(lock_);
    document_ = document;
    fails_ = false;
    service_.set_generation(++generation_);
}

void document_service::fail() {
    const win::exclusive_lock lock(lock_);
    fails_ = true;
}

bool document_service::last_file_exists() const {
    const win::shared_lock lock(lock_);
    return GetFileAttributesW(last_file_.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::optional<scripted_reply> document_service::answer(const scripted_request& request) {
    const json call = parse_bounded(request.text);
    if (call.is_discarded() ||
        call.value("serviceCall", 0) != static_cast<int>(protocol::service_call::get_protected_folders)) {
        return R"({"statusCode":1,"data":{}})";
    }
    const int number = ++fetches_;
    const win::exclusive_lock lock(lock_);
    scripted_reply reply(R"({"statusCode":1,"data":{}})");
    if (!fails_) {
        const std::string folder = call["parameters"].value("tempFolder", "");
        last_file_ = win::from_utf8(folder + "orv_locations_" + std::to_string(GetCurrentProcessId()) + "_" +
                                    std::to_string(number) + ".json")
                         .value();
        write_file(last_file_, document_);
        json data;
        data["objPath"] = win::to_utf8(last_file_).value();
        reply.bytes = json{{"statusCode", 0}, {"data", data}}.dump();
    }
    reply.delay_ms = delay_ms_;
    return reply;
}

}  // namespace ov::test
