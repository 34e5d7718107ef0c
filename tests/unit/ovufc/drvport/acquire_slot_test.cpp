#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "ovufc/ipc/drvport/client_port.h"
#include "testkit/memory/write_trace.h"
#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::fake_driver;
using ov::test::write_trace;
using testing::ElementsAre;

constexpr std::uint32_t other_process = 0x4711;

orv_request some_request() {
    orv_request request{.process_id = 1, .thread_id = 2, .session_id = 3, .text = {}};
    std::memset(request.text, 'r', sizeof request.text - 1);
    return request;
}

// Offsets of the slot's words in the order of their first write; payload and the zeroed gap count as one
// each.
std::vector<std::size_t> order_of_words(const std::vector<std::size_t>& writes) {
    std::vector<std::size_t> order;
    for (std::size_t offset : writes) {
        if (offset >= offsetof(orv_slot, payload)) {
            offset = offsetof(orv_slot, payload);
        } else if (offset >= 96 && offset < 112) {
            offset = 96;
        }
        if (std::find(order.begin(), order.end(), offset) == order.end()) {
            order.push_back(offset);
        }
    }
    return order;
}

TEST(AcquireSlot, free_slot_holds_the_request_and_is_signalled_once) {
    fake_driver driver;
    client_port port;
    driver.slot(0).word_20 = 99;

    volatile orv_slot* slot = port.acquire_slot(some_request());

    ASSERT_EQ(slot, &driver.slot(0));
    EXPECT_EQ(slot->owner, GetCurrentProcessId());
    EXPECT_EQ(slot->state, 0x1000u);
    EXPECT_EQ(slot->abandoned, 0u);
    EXPECT_EQ(slot->kind, 0x80000001u);
    EXPECT_EQ(slot->claimant, GetCurrentProcessId());
    EXPECT_EQ(slot->word_20, 0u);
    EXPECT_EQ(slot->payload_bytes, 2060u);
    const orv_request request = some_request();
    EXPECT_EQ(std::memcmp(const_cast<const std::uint8_t*>(slot->payload), &request, sizeof request), 0);
    EXPECT_EQ(slot->payload[2060], 0u);
    EXPECT_THAT(driver.signalled, ElementsAre(1));
}

TEST(AcquireSlot, words_are_written_in_order_and_the_state_last) {
    fake_driver driver;
    client_port port;
    ASSERT_TRUE(port.connect());
    const orv_request request = some_request();
    std::vector<std::size_t> writes;
    {
        write_trace trace(&driver.slot(0));
        (void)port.acquire_slot(request);
        writes = trace.offsets();
    }
    EXPECT_THAT(order_of_words(writes), ElementsAre(0, 16, 20, 12, 112, 116, 4));
    EXPECT_EQ(writes.back(), 4u);
}

TEST(AcquireSlot, signal_comes_after_the_request_is_posted) {
    fake_driver driver;
    client_port port;
    std::uint32_t state_at_signal = 0;
    driver.on_signal = [&] { state_at_signal = driver.slot(0).state; };
    (void)port.acquire_slot(some_request());
    EXPECT_EQ(state_at_signal, 0x1000u);
}

TEST(AcquireSlot, absent_device_gives_null) {
    fake_driver driver;
    driver.present = false;
    client_port port;
    EXPECT_EQ(port.acquire_slot(some_request()), nullptr);
    EXPECT_TRUE(driver.signalled.empty());
}

TEST(AcquireSlot, state_word_zero_gives_null_and_touches_no_slot) {
    fake_driver driver;
    driver.status().state = 0;
    client_port port;
    ASSERT_TRUE(port.connect());
    std::size_t writes = 0;
    {
        write_trace trace(&driver.slot(0));
        EXPECT_EQ(port.acquire_slot(some_request()), nullptr);
        writes = trace.offsets().size();
    }
    EXPECT_EQ(writes, 0u);
    EXPECT_TRUE(driver.signalled.empty());
}

TEST(AcquireSlot, first_slot_busy_takes_the_second_and_leaves_the_first) {
    fake_driver driver;
    driver.slot(0).owner = other_process;
    client_port port;
    EXPECT_EQ(port.acquire_slot(some_request()), &driver.slot(1));
    EXPECT_EQ(driver.slot(0).owner, other_process);
    EXPECT_EQ(driver.slot(0).state, 0u);
}

TEST(AcquireSlot, all_busy_gives_null_after_five_passes_without_a_nap) {
    fake_driver driver;
    driver.slot(0).owner = other_process;
    driver.slot(1).owner = other_process;
    client_port port;
    ASSERT_TRUE(port.connect());
    std::vector<std::size_t> writes;
    {
        write_trace trace(&driver.slot(1));
        EXPECT_EQ(port.acquire_slot(some_request()), nullptr);
        writes = trace.offsets();
    }
    EXPECT_THAT(writes, ElementsAre(0, 0, 0, 0, 0));
    EXPECT_TRUE(driver.naps.empty());
    EXPECT_TRUE(driver.signalled.empty());
}

TEST(AcquireSlot, slot_freed_between_passes_is_taken) {
    fake_driver driver;
    driver.slot(0).owner = other_process;
    driver.slot(1).owner = other_process;
    client_port port;
    ASSERT_TRUE(port.connect());
    volatile orv_slot* taken = nullptr;
    {
        int attempts = 0;
        write_trace trace(&driver.slot(1), [&](std::size_t) {
            if (++attempts == 3) {
                driver.slot(0).owner = 0;
            }
        });
        taken = port.acquire_slot(some_request());
    }
    EXPECT_EQ(taken, &driver.slot(0));
}

struct size_case {
    std::uint32_t size_word;
    bool second_slot_offered;
};

class SizeWord : public testing::TestWithParam<size_case> {};

TEST_P(SizeWord, first_slot_free_is_taken_whatever_the_size) {
    fake_driver driver;
    driver.status().section_bytes = GetParam().size_word;
    client_port port;
    EXPECT_EQ(port.acquire_slot(some_request()), &driver.slot(0));
}

TEST_P(SizeWord, first_slot_busy_second_is_taken_only_when_it_ends_within) {
    fake_driver driver;
    driver.status().section_bytes = GetParam().size_word;
    driver.slot(0).owner = other_process;
    client_port port;
    EXPECT_EQ(port.acquire_slot(some_request()), GetParam().second_slot_offered ? &driver.slot(1) : nullptr);
}

INSTANTIATE_TEST_SUITE_P(Sizes, SizeWord,
                         testing::Values(size_case{0, false}, size_case{1, false}, size_case{4096, false},
                                         size_case{8192, false}, size_case{12287, false},
                                         size_case{12288, true}, size_case{0xFFFFF000, true},
                                         size_case{0xFFFFFFFF, true}));

class HostileSize : public testing::TestWithParam<std::uint32_t> {};

TEST_P(HostileSize, all_busy_stays_inside_the_mapping) {
    fake_driver driver;
    driver.status().section_bytes = GetParam();
    driver.slot(0).owner = other_process;
    driver.slot(1).owner = other_process;
    client_port port;
    EXPECT_EQ(port.acquire_slot(some_request()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Sizes, HostileSize,
                         testing::Values(16384, 0x7FFFFFFF, 0x80000000, 0xFFFFF000, 0xFFFFFFFF));

TEST(AcquireSlot, size_word_is_read_again_before_each_further_slot) {
    fake_driver driver(3);
    driver.slot(0).owner = other_process;
    driver.slot(1).owner = other_process;
    client_port port;
    ASSERT_TRUE(port.connect());
    volatile orv_slot* taken = &driver.slot(0);
    {
        write_trace trace(&driver.slot(1), [&](std::size_t) { driver.status().section_bytes = 12288; });
        taken = port.acquire_slot(some_request());
    }
    EXPECT_EQ(taken, nullptr);
    EXPECT_EQ(driver.slot(2).owner, 0u);
}

TEST(AcquireSlot, section_that_grew_after_opening_offers_its_new_slot) {
    fake_driver driver;
    driver.slot(0).owner = other_process;
    driver.slot(1).owner = other_process;
    client_port port;
    ASSERT_TRUE(port.connect());
    ASSERT_NE(
        VirtualAlloc(const_cast<orv_slot*>(&driver.slot(2)), ORV_SLOT_BYTES, MEM_COMMIT, PAGE_READWRITE),
        nullptr);
    driver.status().section_bytes = 16384;
    EXPECT_EQ(port.acquire_slot(some_request()), &driver.slot(2));
}

}  // namespace
