#include <gtest/gtest.h>

#include "testkit/files/temp_folder.h"
#include "testkit/process/child_process.h"
#include "testkit/service/scripted_service.h"
#include "tests/driver/driver_control.h"
#include "tests/driver/eventually.h"
#include "tests/driver/exchange.h"
#include "tests/driver/processes/roles.h"

namespace {

namespace roles = ov::test::roles;
using ov::ipc::drvport::details::client_port;
using ov::test::ask;
using ov::test::child_process;
using ov::test::eventually;
using ov::test::request_with;
using ov::test::scripted_request;
using ov::test::scripted_service;
using ov::test::start_driver;
using ov::test::stop_driver;
using ov::test::temp_folder;
using ov::test::this_program;

std::string echo(const scripted_request& request) {
    return "re: " + request.text;
}

class Lifetime : public testing::Test {
  protected:
    ~Lifetime() override { EXPECT_TRUE(start_driver()); }
};

TEST_F(Lifetime, absent_then_started_same_port_connects) {
    ASSERT_TRUE(stop_driver());
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_FALSE(ask(port, "x").ok);
    std::uint32_t reply_bytes = 0;
    EXPECT_TRUE(port.transact(request_with("one way"), nullptr, reply_bytes));
    ASSERT_TRUE(start_driver());
    scripted_service service(echo);
    EXPECT_EQ(ask(port, "x").reply, "re: x");
}

TEST_F(Lifetime, stop_while_a_port_is_open_its_mapping_stays_readable_and_says_zero) {
    scripted_service service(echo);
    client_port port;
    ASSERT_TRUE(ask(port, "x").ok);
    ASSERT_TRUE(stop_driver());
    EXPECT_TRUE(port.connect());  // it stays open for ever
    EXPECT_EQ(port.status().state, 0u);
    EXPECT_FALSE(ask(port, "x").ok);
}

TEST_F(Lifetime, stop_while_another_process_waits_its_exchange_fails_soon) {
    roles::ready_child server(roles::server);
    roles::ready_child waiter(roles::waiter);
    EXPECT_FALSE(waiter.process().wait(100).has_value());
    ASSERT_TRUE(stop_driver());
    EXPECT_EQ(waiter.process().wait(5000), static_cast<DWORD>(roles::exchange_failed));
}

TEST_F(Lifetime, stopped_and_started_again_and_again_serves_each_time) {
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(stop_driver());
        ASSERT_TRUE(start_driver());
        scripted_service service(echo);
        client_port port;
        EXPECT_EQ(ask(port, "x").reply, "re: x");
    }
}

std::wstring development_service() {
    std::wstring path = this_program();
    path.replace(path.rfind(L'\\') + 1, std::wstring::npos, L"orvsvc.exe");
    return path;
}

bool new_client_is_answered() {
    client_port port;
    return ask(port, R"({"parameters":{},"serviceCall":36})").ok;
}

TEST_F(Lifetime, stopped_and_started_under_the_running_service_it_serves_again) {
    const temp_folder state;
    child_process service(development_service(), {L"--state", state.path(), L"run", L"--no-open"});
    ASSERT_TRUE(eventually(new_client_is_answered));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(stop_driver());
        EXPECT_FALSE(new_client_is_answered());
        ASSERT_TRUE(start_driver());
        EXPECT_TRUE(eventually(new_client_is_answered));
    }
}

}  // namespace
