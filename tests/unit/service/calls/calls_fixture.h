#pragma once

#include <gtest/gtest.h>

#include <string>

#include "ovufc/json.h"
#include "service/text.h"
#include "testkit/process/module_attach.h"
#include "testkit/service/scripted_service.h"

namespace ov::test {

/// Tests of the call functions: the real port and driver, and a service that answers what the test says.
class service_calls_test : public testing::Test {
  protected:
    service_calls_test() : service([](const scripted_request&) { return std::string(R"({})"); }) {}

    void answer(const std::string& reply) {
        service.set_answer([reply](const scripted_request&) { return reply; });
    }

    /// Answers as the driver does for bulky results.
    void answer_with_file(const std::wstring& path) {
        const json reply = {{"statusCode", 0}, {"data", {{"objPath", service::to_utf8(path)}}}};
        answer(reply.dump());
    }

    /// From now on the driver serves nothing, and exchanges fail at once.
    void serve_nothing() { service.set_state(0); }

    /// The one request that the test has made, as it arrived.
    [[nodiscard]] std::string sent() const {
        const auto requests = service.requests();
        EXPECT_EQ(requests.size(), 1u);
        return requests.empty() ? std::string() : requests.back().text;
    }

    [[nodiscard]] bool nothing_sent() const { return service.requests().empty(); }

    scripted_service service;
};

}  // namespace ov::test
