#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "testkit/service/scripted_service.h"
#include "tests/driver/eventually.h"
#include "tests/driver/exchange.h"

namespace {

using ov::devdriver::service_side;
using ov::ipc::drvport::details::client_port;
using ov::test::ask;
using ov::test::eventually;
using ov::test::request_with;
using ov::test::scripted_reply;
using ov::test::scripted_request;
using ov::test::scripted_service;

constexpr std::uint32_t short_timeout_ms = 50;

std::optional<scripted_reply> silence(const scripted_request&) {
    return std::nullopt;
}

std::uint32_t owned_slots(service_side& side) {
    std::uint32_t count = 0;
    for (std::uint32_t i = 0; i < side.slot_count(); ++i) {
        count += side.slot(i).owner != 0 ? 1 : 0;
    }
    return count;
}

// Slots that earlier tests abandoned are the driver's to free; each test starts with all of them.
class Slots : public testing::Test {
  protected:
    void SetUp() override {
        service.emplace(silence);
        ASSERT_TRUE(eventually([this] { return owned_slots(service->side()) == 0; }));
    }

    volatile orv_slot& slot(std::uint32_t index) { return service->side().slot(index); }

    std::optional<scripted_service> service;
};

TEST_F(Slots, after_an_exchange_slot_holds_what_the_client_leaves) {
    service->set_answer([](const scripted_request&) { return std::string(2048, 'x'); });
    client_port port;
    ASSERT_TRUE(ask(port, "x").ok);
    EXPECT_EQ(slot(0).owner, 0u);
    EXPECT_EQ(slot(0).state, 0x4000u);
    EXPECT_EQ(slot(0).abandoned, 0u);
    EXPECT_EQ(slot(0).kind, 0xCCCCu);
    EXPECT_EQ(slot(0).claimant, 4u);
    EXPECT_EQ(slot(0).word_20, 0u);
    EXPECT_EQ(slot(0).payload_bytes, 0u);
    EXPECT_TRUE(std::all_of(slot(0).payload, slot(0).payload + ORV_PAYLOAD_CLEARED_BYTES,
                            [](volatile std::uint8_t& byte) { return byte == 0; }));
}

TEST_F(Slots, after_a_time_out_slot_stays_owned_and_abandoned) {
    client_port port(short_timeout_ms);
    EXPECT_FALSE(ask(port, "x").ok);
    EXPECT_EQ(slot(0).abandoned, 1u);
    EXPECT_EQ(slot(0).owner, GetCurrentProcessId());
    Sleep(300);  // several rounds of the driver's looking
    EXPECT_EQ(slot(0).abandoned, 1u);
    EXPECT_EQ(slot(0).owner, GetCurrentProcessId());
}

TEST_F(Slots, abandoned_slot_that_is_answered_late_is_freed) {
    service->set_answer([](const scripted_request&) {
        scripted_reply reply("too late");
        reply.delay_ms = 250;
        return reply;
    });
    client_port port(short_timeout_ms);
    EXPECT_FALSE(ask(port, "x").ok);
    EXPECT_TRUE(eventually([this] { return slot(0).owner == 0; }));
    EXPECT_EQ(slot(0).abandoned, 0u);
}

TEST_F(Slots, one_way_request_is_served_and_its_slot_freed) {
    service->set_answer([](const scripted_request&) { return "to nobody"; });
    client_port port;
    std::uint32_t reply_bytes = 0;
    EXPECT_TRUE(port.transact(request_with("one way"), nullptr, reply_bytes));
    ASSERT_TRUE(service->wait_for_requests(1));
    EXPECT_EQ(service->requests()[0].text, "one way");
    EXPECT_TRUE(eventually([this] { return slot(0).owner == 0; }));
}

TEST_F(Slots, all_busy_the_next_request_fails_at_once) {
    client_port port(short_timeout_ms);
    for (std::uint32_t i = 0; i < service->side().slot_count(); ++i) {
        ASSERT_NE(port.acquire_slot(request_with("kept")), nullptr);
    }
    EXPECT_EQ(owned_slots(service->side()), service->side().slot_count());
    EXPECT_EQ(port.acquire_slot(request_with("one too many")), nullptr);
    EXPECT_FALSE(ask(port, "one too many").ok);
    std::uint32_t reply_bytes = 0;
    EXPECT_FALSE(port.transact(request_with("one too many"), nullptr, reply_bytes));
}

TEST_F(Slots, port_closed_with_slots_held_driver_frees_them) {
    {
        client_port port(short_timeout_ms);
        for (int i = 0; i < 5; ++i) {
            (void)ask(port, "x");
        }
        EXPECT_EQ(owned_slots(service->side()), 5u);
    }
    // They are in service; the driver waits until the service side is done with them.
    service.reset();
    service.emplace(silence);
    EXPECT_TRUE(eventually([this] { return owned_slots(service->side()) == 0; }));
}

TEST_F(Slots, given_up_and_abandoned_is_freed) {
    service.reset();
    service_side side;
    ASSERT_EQ(side.open(5000), ERROR_SUCCESS);
    side.set_state(1);
    client_port port(short_timeout_ms);
    ASSERT_NE(port.acquire_slot(request_with("x")), nullptr);
    const auto taken = side.next_request(1000);
    ASSERT_TRUE(taken.has_value());
    side.give_up(*taken);
    EXPECT_EQ(side.slot(taken->slot).state, ORV_SLOT_GIVEN_UP);
    InterlockedExchange(reinterpret_cast<volatile LONG*>(&side.slot(taken->slot).abandoned), 1);
    EXPECT_TRUE(eventually([&] { return side.slot(taken->slot).owner == 0; }));
}

TEST_F(Slots, owner_that_is_no_client_is_freed) {
    slot(7).owner = 0xDEADBEEF;
    EXPECT_TRUE(eventually([this] { return slot(7).owner == 0; }));
}

TEST_F(Slots, posted_slot_that_is_no_request_is_passed_over) {
    service->set_answer([](const scripted_request&) { return "fine"; });
    client_port port;
    ASSERT_TRUE(port.connect());
    slot(0).owner = GetCurrentProcessId();
    slot(0).kind = 0x1234;
    slot(0).payload_bytes = 0xFFFFFFFF;
    slot(0).state = ORV_SLOT_POSTED;
    EXPECT_EQ(ask(port, "x").reply, "fine");
    EXPECT_EQ(service->requests().size(), 1u);
    EXPECT_EQ(slot(0).state, ORV_SLOT_GIVEN_UP);
    slot(0).abandoned = 1;
}

TEST_F(Slots, size_word_zero_offers_the_first_slot) {
    service->set_answer([](const scripted_request&) { return "fine"; });
    service->set_section_bytes(0);
    client_port port;
    EXPECT_EQ(ask(port, "x").reply, "fine");
}

TEST_F(Slots, size_word_below_12288_offers_only_the_first_slot) {
    client_port port(short_timeout_ms);
    for (const std::uint32_t size : {0u, 4096u, 8192u, 12287u}) {
        service->set_section_bytes(size);
        service->side().slot(0).owner = GetCurrentProcessId();
        EXPECT_EQ(port.acquire_slot(request_with("x")), nullptr) << size;
        service->side().slot(0).owner = 0;
    }
    service->set_section_bytes(12288);
    ASSERT_NE(port.acquire_slot(request_with("x")), nullptr);
    ASSERT_NE(port.acquire_slot(request_with("x")), nullptr);
    EXPECT_EQ(port.acquire_slot(request_with("x")), nullptr);
}

TEST_F(Slots, hostile_size_word_is_held_to_the_mapping) {
    client_port port(short_timeout_ms);
    service->set_section_bytes(0xFFFFFFFF);
    for (std::uint32_t i = 0; i < service->side().slot_count(); ++i) {
        ASSERT_NE(port.acquire_slot(request_with("kept")), nullptr);
    }
    EXPECT_EQ(port.acquire_slot(request_with("one too many")), nullptr);
}

TEST_F(Slots, new_service_side_finds_the_true_size_again) {
    service->set_section_bytes(0);
    service.reset();
    service.emplace(silence);
    EXPECT_EQ(service->side().status().section_bytes, ORV_SECTION_BYTES);
}

}  // namespace
