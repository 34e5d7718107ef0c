#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "ovufc/ipc/drvport/client_port.h"
#include "testkit/memory/write_trace.h"
#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::fake_driver;
using ov::test::write_trace;
using testing::ElementsAre;

constexpr std::uint32_t untouched = 0xAAAAAAAA;

class Transact : public testing::Test {
  protected:
    void reply(std::string_view bytes, std::uint32_t length_word) {
        volatile orv_slot& slot = driver.slot(0);
        std::memcpy(const_cast<std::uint8_t*>(slot.payload), bytes.data(), bytes.size());
        slot.payload_bytes = length_word;
        slot.state = ORV_SLOT_REPLIED;
    }
    void reply(std::string_view bytes) { reply(bytes, static_cast<std::uint32_t>(bytes.size())); }

    bool transact(client_port& port) { return port.transact(request, buffer.data(), reply_bytes); }

    [[nodiscard]] std::string replied() const { return {buffer.data(), reply_bytes}; }

    void expect_abandoned(std::uint32_t state) {
        EXPECT_EQ(driver.slot(0).abandoned, 1u);
        EXPECT_EQ(driver.slot(0).owner, GetCurrentProcessId());
        EXPECT_EQ(driver.slot(0).state, state);
        EXPECT_EQ(reply_bytes, untouched);
        EXPECT_TRUE(std::all_of(buffer.begin(), buffer.end(), [](char c) { return c == 0; }));
    }

    fake_driver driver;
    orv_request request{};
    std::array<char, ORV_REPLY_LIMIT_BYTES> buffer{};
    std::uint32_t reply_bytes = untouched;
};

TEST_F(Transact, reply_that_is_there_is_taken_without_a_nap) {
    driver.on_signal = [this] { reply("hello"); };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(replied(), "hello");
    EXPECT_TRUE(driver.naps.empty());
    EXPECT_EQ(driver.yields, 0u);
}

TEST_F(Transact, reply_that_comes_at_once_is_met_before_the_first_nap) {
    driver.on_yield = [this] {
        if (driver.yields == 3) {
            reply("at once");
        }
    };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(replied(), "at once");
    EXPECT_TRUE(driver.naps.empty());
    EXPECT_EQ(driver.yields, 3u);
}

TEST_F(Transact, long_wait_gives_the_processor_away_for_one_millisecond_and_then_naps) {
    driver.on_nap = [this] { EXPECT_EQ(driver.yields, 10u); };  // of 100 microseconds
    client_port port(500);
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.naps.size(), 51u);
    EXPECT_EQ(driver.yields, 10u);
}

TEST_F(Transact, busy_machine_that_gives_the_processor_back_late_is_not_asked_again) {
    driver.yield_length_us = 40'000;
    client_port port(30);
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.yields, 1u);
}

TEST_F(Transact, state_word_zero_after_the_post_ends_the_yielding_and_gives_up_at_the_next_poll) {
    driver.on_signal = [this] { driver.status().state = 0; };
    client_port port;
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.yields, 0u);
    EXPECT_EQ(driver.naps.size(), 1u);
    expect_abandoned(ORV_SLOT_POSTED);
}

TEST_F(Transact, state_word_zero_while_yielding_ends_it_at_once) {
    driver.on_yield = [this] { driver.status().state = driver.yields < 2 ? 1 : 0; };
    client_port port;
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.yields, 2u);
    EXPECT_EQ(driver.naps.size(), 1u);
}

TEST_F(Transact, reply_during_the_last_yield_of_a_dying_driver_is_taken) {
    driver.on_yield = [this] {
        driver.status().state = 0;
        reply("last words");
    };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(replied(), "last words");
    EXPECT_TRUE(driver.naps.empty());
}

TEST_F(Transact, reply_that_comes_later_is_polled_for_in_alertable_naps_of_ten_milliseconds) {
    driver.on_nap = [this] {
        if (driver.naps.size() == 3) {
            reply("late");
        }
    };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(replied(), "late");
    ASSERT_EQ(driver.naps.size(), 3u);
    for (const auto& nap : driver.naps) {
        EXPECT_EQ(nap.length_ms, 10u);
        EXPECT_EQ(nap.alertable, TRUE);
    }
}

TEST_F(Transact, overlong_reply_is_cut_to_2048_bytes) {
    driver.on_signal = [this] { reply(std::string(ORV_PAYLOAD_BYTES, 'x'), 5000); };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(reply_bytes, 2048u);
    EXPECT_EQ(replied(), std::string(2048, 'x'));
}

TEST_F(Transact, length_word_of_all_bits_is_cut_to_2048_bytes) {
    driver.on_signal = [this] { reply("x", 0xFFFFFFFF); };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(reply_bytes, 2048u);
}

TEST_F(Transact, empty_reply_is_a_reply) {
    driver.on_signal = [this] { reply(""); };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(reply_bytes, 0u);
}

TEST_F(Transact, after_the_reply_slot_is_cleared_and_free) {
    volatile orv_slot& slot = driver.slot(0);
    driver.on_signal = [&] {
        std::memset(const_cast<std::uint8_t*>(slot.payload), 0xEE, ORV_PAYLOAD_BYTES);
        std::memset(const_cast<std::uint8_t*>(slot.cleared_96), 0xEE, sizeof slot.cleared_96);
        std::memset(const_cast<std::uint8_t*>(slot.reserved_24), 0xEE, sizeof slot.reserved_24);
        slot.abandoned = 5;
        slot.word_20 = 5;
        reply("x");
    };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(slot.owner, 0u);
    EXPECT_EQ(slot.state, 0x4000u);
    EXPECT_EQ(slot.abandoned, 0u);
    EXPECT_EQ(slot.kind, 0xCCCCu);
    EXPECT_EQ(slot.claimant, 4u);
    EXPECT_EQ(slot.word_20, 0u);
    EXPECT_EQ(slot.payload_bytes, 0u);
    const auto is = [](int value) { return [value](volatile std::uint8_t& byte) { return byte == value; }; };
    EXPECT_TRUE(std::all_of(slot.payload, slot.payload + 3948, is(0)));
    EXPECT_TRUE(std::all_of(slot.payload + 3948, slot.payload + ORV_PAYLOAD_BYTES, is(0xEE)));
    EXPECT_TRUE(std::all_of(std::begin(slot.cleared_96), std::end(slot.cleared_96), is(0)));
    EXPECT_TRUE(std::all_of(std::begin(slot.reserved_24), std::end(slot.reserved_24), is(0xEE)));
}

TEST_F(Transact, release_writes_the_words_in_order_and_the_owner_last) {
    client_port port;
    ASSERT_TRUE(port.connect());
    std::unique_ptr<write_trace> trace;
    driver.on_signal = [&] {
        reply("x");
        trace = std::make_unique<write_trace>(&driver.slot(0));
    };
    EXPECT_TRUE(transact(port));
    std::vector<std::size_t> writes = trace->offsets();
    trace.reset();

    const auto first_word = std::find(writes.begin(), writes.end(), 8u);
    EXPECT_TRUE(std::all_of(writes.begin(), first_word, [](std::size_t offset) { return offset >= 96; }));
    writes.erase(writes.begin(), first_word);
    EXPECT_THAT(writes, ElementsAre(8, 20, 4, 16, 12, 112, 0));
}

TEST_F(Transact, no_reply_gives_up_once_more_than_the_time_out_has_passed) {
    client_port port(30);
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.naps.size(), 4u);  // after the third exactly 30 ms have passed, which is not more
    expect_abandoned(ORV_SLOT_POSTED);
}

TEST_F(Transact, default_time_out_is_thirty_seconds) {
    client_port port;
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.naps.size(), 3001u);
}

TEST_F(Transact, tick_count_that_wraps_changes_nothing) {
    driver.tick = 0xFFFFFFF0;
    client_port port(30);
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.naps.size(), 4u);
}

TEST_F(Transact, reply_during_the_last_nap_is_taken) {
    driver.on_nap = [this] {
        if (driver.naps.size() == 4) {
            reply("just in time");
        }
    };
    client_port port(30);
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(replied(), "just in time");
}

TEST_F(Transact, state_word_zero_while_waiting_gives_up_at_the_next_poll) {
    driver.on_nap = [this] {
        if (driver.naps.size() == 2) {
            driver.status().state = 0;
        }
    };
    client_port port;
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(driver.naps.size(), 2u);
    expect_abandoned(ORV_SLOT_POSTED);
}

TEST_F(Transact, abandoned_slot_is_not_used_again) {
    client_port port(30);
    EXPECT_FALSE(transact(port));
    driver.on_signal = [this] { driver.slot(1).state = ORV_SLOT_REPLIED; };
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(driver.slot(0).abandoned, 1u);
    EXPECT_EQ(driver.slot(0).owner, GetCurrentProcessId());
    EXPECT_EQ(driver.slot(1).owner, 0u);
}

TEST_F(Transact, other_states_are_waited_through) {
    driver.on_nap = [this] {
        constexpr std::array<std::uint32_t, 4> states{0x1800, 0x8000, 0x4000, 0x12345678};
        if (driver.naps.size() <= states.size()) {
            driver.slot(0).state = states[driver.naps.size() - 1];
        } else {
            reply("x");
        }
    };
    client_port port;
    EXPECT_TRUE(transact(port));
    EXPECT_EQ(driver.naps.size(), 5u);
}

TEST_F(Transact, all_slots_busy_is_false_at_once) {
    driver.slot(0).owner = 1;
    driver.slot(1).owner = 1;
    client_port port;
    EXPECT_FALSE(transact(port));
    EXPECT_TRUE(driver.naps.empty());
    EXPECT_EQ(reply_bytes, untouched);
}

TEST_F(Transact, absent_device_is_false) {
    driver.present = false;
    client_port port;
    EXPECT_FALSE(transact(port));
    EXPECT_EQ(reply_bytes, untouched);
}

TEST_F(Transact, one_way_leaves_an_abandoned_slot_and_does_not_wait) {
    client_port port;
    EXPECT_TRUE(port.transact(request, nullptr, reply_bytes));
    EXPECT_TRUE(driver.naps.empty());
    EXPECT_THAT(driver.signalled, ElementsAre(1));
    expect_abandoned(ORV_SLOT_POSTED);
}

TEST_F(Transact, one_way_to_an_absent_device_reports_success) {
    driver.present = false;
    client_port port;
    EXPECT_TRUE(port.transact(request, nullptr, reply_bytes));
}

TEST_F(Transact, one_way_with_all_slots_busy_is_false) {
    driver.slot(0).owner = 1;
    driver.slot(1).owner = 1;
    client_port port;
    EXPECT_FALSE(port.transact(request, nullptr, reply_bytes));
}

TEST_F(Transact, one_way_with_state_word_zero_is_false) {
    driver.status().state = 0;
    client_port port;
    EXPECT_FALSE(port.transact(request, nullptr, reply_bytes));
}

}  // namespace
