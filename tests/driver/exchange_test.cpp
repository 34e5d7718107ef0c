#include <gtest/gtest.h>

#include "tests/driver/exchange.h"
#include "tests/support/scripted_service.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::exchange;
using ov::test::scripted_reply;
using ov::test::scripted_request;
using ov::test::scripted_service;

TEST(Exchange, RequestAndReply_ArriveWhole) {
    scripted_service service([](const scripted_request& request) { return "answer to " + request.text; });
    client_port port;

    const auto result = exchange(port, R"({"parameters":{},"serviceCall":1})");

    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply, R"(answer to {"parameters":{},"serviceCall":1})");
    EXPECT_EQ(result.reply_bytes, result.reply.size());
}

}  // namespace
