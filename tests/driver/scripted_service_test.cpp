#include "testkit/service/scripted_service.h"

#include <gtest/gtest.h>

#include "tests/driver/driver_control.h"
#include "tests/driver/exchange.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::ask;
using ov::test::scripted_reply;
using ov::test::scripted_request;
using ov::test::scripted_service;

TEST(ScriptedService, requests_are_kept_in_order_until_forgotten) {
    scripted_service service([](const scripted_request&) { return "fine"; });
    client_port port;
    (void)ask(port, "first");
    (void)ask(port, "second");
    ASSERT_EQ(service.requests().size(), 2u);
    EXPECT_EQ(service.requests()[0].text, "first");
    EXPECT_EQ(service.requests()[1].text, "second");
    service.forget_requests();
    EXPECT_TRUE(service.requests().empty());
}

TEST(ScriptedService, new_answer_holds_from_the_next_request) {
    scripted_service service([](const scripted_request&) { return "old"; });
    client_port port;
    EXPECT_EQ(ask(port, "x").reply, "old");
    service.set_answer([](const scripted_request&) { return "new"; });
    EXPECT_EQ(ask(port, "x").reply, "new");
}

TEST(ScriptedService, silence_keeps_the_client_waiting) {
    scripted_service service([](const scripted_request& request) -> std::optional<scripted_reply> {
        if (request.text == "say something") {
            return "something";
        }
        return std::nullopt;
    });
    client_port port(30);
    EXPECT_FALSE(ask(port, "x").ok);
    EXPECT_EQ(service.requests().size(), 1u);
    client_port patient;
    EXPECT_EQ(ask(patient, "say something").reply, "something");
}

TEST(ScriptedService, waiting_for_requests_that_do_not_come_is_false) {
    scripted_service service([](const scripted_request&) { return "fine"; });
    EXPECT_FALSE(service.wait_for_requests(1, 20));
}

TEST(ScriptedService, next_one_starts_from_the_same_status_words) {
    {
        scripted_service service([](const scripted_request&) { return "fine"; });
        service.set_generation(7);
        service.set_flags(0xFF);
    }
    scripted_service service([](const scripted_request&) { return "fine"; });
    EXPECT_EQ(service.side().status().state, 1u);
    EXPECT_EQ(service.side().status().generation, 0u);
    EXPECT_EQ(service.side().status().flags, 0u);
}

TEST(ScriptedService, without_a_driver_throws) {
    ASSERT_TRUE(ov::test::stop_driver());
    EXPECT_THROW(scripted_service([](const scripted_request&) { return "fine"; }), std::runtime_error);
    EXPECT_TRUE(ov::test::start_driver());
}

}  // namespace
