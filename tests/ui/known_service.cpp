#include "tests/ui/known_service.h"

#include <windows.h>

#include "ovufc/json.h"
#include "service/text.h"

namespace ov::test {

namespace {

constexpr std::uint32_t exports_available = 8;
constexpr std::uint32_t addons_shown = 16;

int service_call_of(const std::string& request) {
    const auto parsed = ov::json::parse(request, nullptr, /*allow_exceptions=*/false);
    return parsed.is_object() ? parsed.value("serviceCall", -1) : -1;
}

std::string success(const ov::json& data) {
    return ov::json{{"statusCode", 0}, {"data", data}}.dump();
}

std::string make_document(const std::wstring& local, const std::wstring& managed, const std::wstring& cloud) {
    const auto list = [](const std::wstring& path) { return ov::json::array({service::to_utf8(path)}); };
    const ov::json none = ov::json::array();
    return ov::json{{"hardDrive", {{"folders", list(local)}}},
                    {"mgmtCustom", list(managed)},
                    {"oneDrive", list(cloud)},
                    {"google", none},
                    {"boxSyn", none},
                    {"dropBox", none},
                    {"oneDriveBusiness", none}}
        .dump();
}

}  // namespace

known_service::known_service()
    : projects_(folder_.make_folder(L"Projects")),
      document_(make_document(projects_, folder_.make_folder(L"Managed"), folder_.make_folder(L"Cloud"))),
      service_([this](const scripted_request& request) { return answer(request); }) {
    folder_.make_file(L"Projects\\plan.txt", "what we are going to do");
    folder_.make_folder(L"Projects\\drawings");
    service_.set_flags(exports_available | addons_shown);
    service_.set_generation(1);
}

std::vector<int> known_service::calls() const {
    std::vector<int> numbers;
    for (const auto& request : service_.requests()) {
        numbers.push_back(service_call_of(request.text));
    }
    return numbers;
}

scripted_reply known_service::answer(const scripted_request& request) {
    switch (service_call_of(request.text)) {
        case call_folder_status:
            return success({{"protectedFolder", true}});
        case call_protected_folders: {
            // The reader deletes the file that it was given.
            const std::wstring path = folder_.make_file(L"document.json", document_);
            return success({{"objPath", service::to_utf8(path)}});
        }
        case call_restore_points:
            return success({{"restorePoints", ov::json::array({{{"createdOn", 133'500'000'000'000'000},
                                                                {"sequenceNumber", 7}}})}});
        default:
            return success(ov::json::object());
    }
}

}  // namespace ov::test
