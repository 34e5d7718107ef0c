#include <gtest/gtest.h>

#include <array>

#include "companions/devdriver/service_side.h"
#include "testkit/process/child_process.h"
#include "testkit/service/scripted_service.h"
#include "tests/driver/eventually.h"
#include "tests/driver/exchange.h"
#include "tests/driver/processes/roles.h"

namespace {

namespace roles = ov::test::roles;
using ov::devdriver::service_side;
using ov::ipc::drvport::details::client_port;
using ov::test::ask;
using ov::test::child_process;
using ov::test::eventually;
using ov::test::scripted_request;
using ov::test::scripted_service;
using ov::test::this_program;

std::string echo(const scripted_request& request) {
    return "re: " + request.text;
}

struct sid_deleter {
    using type = PSID;
    static type invalid() noexcept { return nullptr; }
    static void close(type sid) noexcept { FreeSid(sid); }
};

// This process's token with the administrators' group fit for denying only.
ov::win::unique_kernel_handle token_without_administrators() {
    SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
    ov::win::unique_handle<sid_deleter> administrators;
    AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0,
                             0, 0, administrators.put());
    ov::win::unique_kernel_handle token;
    OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, token.put());
    SID_AND_ATTRIBUTES disabled{administrators.get(), 0};
    ov::win::unique_kernel_handle restricted;
    CreateRestrictedToken(token.get(), 0, 1, &disabled, 0, nullptr, 0, nullptr, restricted.put());
    return restricted;
}

std::uint32_t owned_slots(scripted_service& service) {
    std::uint32_t owned = 0;
    for (std::uint32_t slot = 0; slot < service.side().slot_count(); ++slot) {
        owned += service.side().slot(slot).owner != 0 ? 1 : 0;
    }
    return owned;
}

TEST(Service, no_service_side_state_is_zero_and_requests_fail_at_once) {
    client_port port;
    ASSERT_TRUE(port.connect());
    EXPECT_TRUE(eventually([&] { return port.status().state == 0; }));
    EXPECT_FALSE(ask(port, "x").ok);
    EXPECT_EQ(port.status().section_bytes, ORV_SECTION_BYTES);
}

TEST(Service, status_words_reach_a_client_that_was_there_before) {
    client_port port;
    ASSERT_TRUE(port.connect());
    scripted_service service(echo);
    service.set_state(3);
    service.set_generation(0x12345678);
    service.set_flags(0x5C);
    EXPECT_EQ(port.status().state, 3u);
    EXPECT_EQ(port.status().generation, 0x12345678u);
    EXPECT_EQ(port.status().flags, 0x5Cu);
}

TEST(Service, departure_puts_the_state_to_zero) {
    client_port port;
    ASSERT_TRUE(port.connect());
    { scripted_service service(echo); }
    EXPECT_EQ(port.status().state, 0u);
}

TEST(Service, state_zero_by_the_service_stops_requests_without_touching_a_slot) {
    scripted_service service(echo);
    service.set_state(0);
    client_port port;
    EXPECT_FALSE(ask(port, "x").ok);
    EXPECT_TRUE(service.requests().empty());
    service.set_state(1);
    EXPECT_TRUE(ask(port, "x").ok);
}

TEST(Service, second_service_side_is_refused_while_the_first_is_there) {
    {
        service_side first;
        ASSERT_EQ(first.open(5000), ERROR_SUCCESS);
        service_side second;
        EXPECT_EQ(second.open(), ERROR_BUSY);
    }
    service_side next;
    EXPECT_EQ(next.open(5000), ERROR_SUCCESS);
}

TEST(Service, no_administrator_is_refused) {
    const auto token = token_without_administrators();
    ASSERT_TRUE(token);
    child_process refused(this_program(), {roles::asker}, token.get());
    EXPECT_EQ(refused.wait(20000), ERROR_ACCESS_DENIED);
    service_side settle;
    ASSERT_EQ(settle.open(5000), ERROR_SUCCESS);
    settle.close();
    child_process granted(this_program(), {roles::asker});
    EXPECT_EQ(granted.wait(20000), ERROR_SUCCESS);
}

TEST(Service, no_administrator_is_a_client_all_the_same) {
    scripted_service service([](const scripted_request& r) { return roles::answer_in_kind(r.text); });
    const auto token = token_without_administrators();
    child_process client(this_program(), {roles::client, L"plain", L"3"}, token.get());
    EXPECT_EQ(client.wait(20000), static_cast<DWORD>(roles::exchange_done));
}

TEST(Service, death_ends_a_waiting_exchange_soon) {
    roles::ready_child server(roles::server);
    roles::ready_child waiter(roles::waiter);
    EXPECT_FALSE(waiter.process().wait(100).has_value());
    const DWORD started = GetTickCount();
    server.process().kill();
    EXPECT_EQ(waiter.process().wait(20000), static_cast<DWORD>(roles::exchange_failed));
    EXPECT_LT(GetTickCount() - started, 5000u);
}

TEST(Service, death_in_the_middle_of_an_answer_ends_the_exchange_and_leaves_nothing_to_the_next) {
    {
        roles::ready_child falterer(roles::falterer);
        roles::ready_child waiter(roles::waiter);
        EXPECT_EQ(waiter.process().wait(20000), static_cast<DWORD>(roles::exchange_failed));
    }
    scripted_service service(echo);
    client_port port;
    EXPECT_EQ(ask(port, "x").reply, "re: x");
    EXPECT_TRUE(eventually([&] { return owned_slots(service) == 0; })) << "a slot is lost";
}

TEST(Service, state_words_out_of_order_are_waited_through) {
    service_side side;
    ASSERT_EQ(side.open(5000), ERROR_SUCCESS);
    side.set_state(1);
    roles::ready_child waiter(roles::waiter);
    const auto taken = side.next_request(5000);
    ASSERT_TRUE(taken.has_value());
    volatile orv_slot& slot = side.slot(taken->slot);
    for (const std::uint32_t word : {0U, ORV_SLOT_POSTED, 77U, 0xFFFFFFFFU, ORV_SLOT_IN_SERVICE}) {
        slot.state = word;
        EXPECT_FALSE(waiter.process().wait(50).has_value()) << word;
    }
    side.reply(*taken, "at last");
    EXPECT_EQ(waiter.process().wait(20000), static_cast<DWORD>(roles::exchange_done));
}

TEST(Service, after_death_another_takes_over) {
    client_port port;
    {
        roles::ready_child server(roles::server);
        server.process().kill();
    }
    scripted_service service(echo);
    EXPECT_EQ(ask(port, "x").reply, "re: x");
}

TEST(Service, request_that_was_posted_is_seen_by_the_next_service_side) {
    service_side first;
    ASSERT_EQ(first.open(5000), ERROR_SUCCESS);
    first.set_state(1);
    client_port port;
    volatile orv_slot* slot = port.acquire_slot(ov::test::request_with("left behind"));
    ASSERT_NE(slot, nullptr);
    first.close();
    scripted_service service(echo);
    EXPECT_TRUE(service.wait_for_requests(1));
    EXPECT_TRUE(eventually([&] { return slot->state == ORV_SLOT_REPLIED; }));
}

TEST(Service, request_taken_and_not_answered_is_answered_empty_by_the_next_service_side) {
    service_side first;
    ASSERT_EQ(first.open(5000), ERROR_SUCCESS);
    first.set_state(1);
    client_port port;
    volatile orv_slot* slot = port.acquire_slot(ov::test::request_with("taken"));
    ASSERT_NE(slot, nullptr);
    ASSERT_TRUE(first.next_request(1000).has_value());
    first.close();
    scripted_service service(echo);
    EXPECT_EQ(slot->state, ORV_SLOT_REPLIED);
    EXPECT_EQ(slot->payload_bytes, 0u);
    EXPECT_TRUE(service.requests().empty());
}

TEST(ServiceSide, no_request_times_out) {
    service_side side;
    ASSERT_EQ(side.open(5000), ERROR_SUCCESS);
    EXPECT_FALSE(side.next_request(20).has_value());
}

TEST(ServiceSide, stop_event_ends_the_wait) {
    service_side side;
    ASSERT_EQ(side.open(5000), ERROR_SUCCESS);
    const ov::win::unique_kernel_handle stop(CreateEventW(nullptr, TRUE, TRUE, nullptr));
    EXPECT_FALSE(side.next_request(INFINITE, stop.get()).has_value());
}

struct control_case {
    DWORD code, room, error;
};

class Control : public testing::TestWithParam<control_case> {};

TEST_P(Control, is_refused_without_harm) {
    const ov::win::unique_file device(CreateFileW(ORV_DEVICE_PATH, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(device);
    std::array<char, 64> out{};
    DWORD bytes = 0;
    EXPECT_FALSE(DeviceIoControl(device.get(), GetParam().code, nullptr, 0, out.data(), GetParam().room,
                                 &bytes, nullptr));
    EXPECT_EQ(GetLastError(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Requests, Control,
                         testing::Values(control_case{ORV_IOCTL_OPEN, 23, ERROR_INSUFFICIENT_BUFFER},
                                         control_case{ORV_IOCTL_OPEN, 0, ERROR_INSUFFICIENT_BUFFER},
                                         control_case{ORV_IOCTL_SERVE, 23, ERROR_INSUFFICIENT_BUFFER},
                                         control_case{ORV_IOCTL_OPEN + 0x100, 24, ERROR_INVALID_FUNCTION}));

TEST(Control, second_open_request_on_one_handle_is_refused) {
    const ov::win::unique_file device(CreateFileW(ORV_DEVICE_PATH, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(device);
    orv_open_reply reply{};
    DWORD bytes = 0;
    ASSERT_TRUE(
        DeviceIoControl(device.get(), ORV_IOCTL_OPEN, nullptr, 0, &reply, sizeof reply, &bytes, nullptr));
    EXPECT_EQ(bytes, 24u);
    const ov::win::unique_kernel_handle semaphore(reinterpret_cast<HANDLE>(reply.semaphore));
    // A client may signal and not wait: it could take others' signals away.
    EXPECT_EQ(WaitForSingleObject(semaphore.get(), 0), WAIT_FAILED);
    EXPECT_FALSE(
        DeviceIoControl(device.get(), ORV_IOCTL_OPEN, nullptr, 0, &reply, sizeof reply, &bytes, nullptr));
}

}  // namespace
