// One exchange, and the call that a right-click makes.

#include <string>

#include "bench/harness/catch2.h"
#include "bench/harness/compare.h"
#include "bench/harness/round_trip.h"
#include "bench/paths/exchange.h"
#include "ovufc/ipc/drvport/client_port.h"
#include "ovufc/json.h"
#include "service/calls.h"
#include "testkit/process/module_attach.h"
#include "testkit/service/scripted_service.h"

namespace {

using ov::bench::compare;
using ov::bench::exchange;
using ov::bench::require;
using ov::ipc::drvport::details::client_port;

constexpr const char* status_reply = R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"full"}})";

TEST_CASE("exchange", "[served]") {
    const ov::test::scripted_service service([](const auto&) { return status_reply; });
    client_port port;
    ov::bench::round_trip trip;
    compare("one exchange", {.aim = 2.5, .quantile = 0.9, .pause_ms = 25, .rounds = 12},
            {{"ours", [&] { require(exchange(port), "an exchange"); }, {}},
             {"event round trip", [&] { trip.go(); }, {}}});
}

TEST_CASE("get_folder_status", "[served]") {
    ov::test::scripted_service service([](const auto&) { return status_reply; });
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    client_port port;
    const auto ours = [] {
        bool restricted = false;
        bool exports_available = false;
        require(
            ov::service::get_folder_status(L"C:\\Users\\Public\\Documents", restricted, exports_available),
            "get_folder_status");
    };
    const auto floor = [&] {
        ov::json asked;
        asked["parameters"]["folderName"] = "C:\\Users\\Public\\Documents";
        asked["serviceCall"] = 13;
        const std::string text = asked.dump();
        require(exchange(port), "an exchange");
        const auto answer = ov::json::parse(status_reply);
        require(!text.empty() && answer.is_object(), "JSON");
    };
    compare("get_folder_status", {.aim = 1.2, .pause_ms = 25, .rounds = 12},
            {{"ours", ours, {}}, {"exchange, one parse, one dump", floor, {}}});
}

}  // namespace
