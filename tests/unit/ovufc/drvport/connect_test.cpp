#include <gtest/gtest.h>

#include <array>
#include <atomic>

#include "ovufc/ipc/drvport/client_port.h"
#include "ovufc/win/handle.h"
#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::fake_driver;

TEST(Connect, new_port_has_opened_nothing) {
    fake_driver driver;
    const client_port port;
    EXPECT_TRUE(driver.opened.empty());
}

TEST(Connect, opens_the_device_for_reading_and_shared_reading) {
    fake_driver driver;
    client_port port;

    EXPECT_TRUE(port.connect());

    ASSERT_EQ(driver.opened.size(), 1u);
    const auto& call = driver.opened[0];
    EXPECT_EQ(call.path, L"\\\\.\\orvdrv");
    EXPECT_EQ(call.access, 0x80000000u);
    EXPECT_EQ(call.share, 1u);
    EXPECT_EQ(call.creation, 3u);
    EXPECT_EQ(call.attributes, 0x80u);
    EXPECT_TRUE(call.without_security);
    EXPECT_TRUE(call.without_template);
}

TEST(Connect, asks_without_input_for_twenty_four_bytes_synchronously) {
    fake_driver driver;
    client_port port;

    EXPECT_TRUE(port.connect());

    ASSERT_EQ(driver.controlled.size(), 1u);
    const auto& call = driver.controlled[0];
    EXPECT_EQ(call.device, fake_driver::device);
    EXPECT_EQ(call.code, 0xA8A822A8u);
    EXPECT_TRUE(call.without_input);
    EXPECT_EQ(call.in_bytes, 0u);
    EXPECT_EQ(call.out_bytes, 24u);
    EXPECT_TRUE(call.synchronous);
}

TEST(Connect, open_port_shows_the_status_block) {
    fake_driver driver;
    driver.status().generation = 77;
    client_port port;
    ASSERT_TRUE(port.connect());
    EXPECT_EQ(port.status().generation, 77u);
}

TEST(Connect, open_port_is_not_opened_again) {
    fake_driver driver;
    client_port port;
    EXPECT_TRUE(port.connect());
    driver.present = false;
    EXPECT_TRUE(port.connect());
    EXPECT_EQ(driver.opened.size(), 1u);
    EXPECT_EQ(driver.controlled.size(), 1u);
}

TEST(Connect, absent_device_is_false_and_tried_again_each_time) {
    fake_driver driver;
    driver.present = false;
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_FALSE(port.connect());
    EXPECT_EQ(driver.opened.size(), 2u);
    EXPECT_TRUE(driver.controlled.empty());
    EXPECT_TRUE(driver.closed.empty());
    driver.present = true;
    EXPECT_TRUE(port.connect());
}

TEST(Connect, failed_request_closes_the_device_and_is_tried_again) {
    fake_driver driver;
    driver.answers_open = false;
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_EQ(driver.closed, std::vector<HANDLE>{fake_driver::device});
    driver.answers_open = true;
    EXPECT_TRUE(port.connect());
}

TEST(Connect, null_semaphore_closes_the_device_and_is_tried_again) {
    fake_driver driver;
    driver.gives_semaphore = false;
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_EQ(driver.closed, std::vector<HANDLE>{fake_driver::device});
    driver.gives_semaphore = true;
    EXPECT_TRUE(port.connect());
}

TEST(Connect, null_section_closes_both_handles) {
    fake_driver driver;
    driver.section_word = 0;
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_EQ(driver.closed, (std::vector<HANDLE>{fake_driver::semaphore, fake_driver::device}));
}

TEST(Connect, destruction_closes_device_then_semaphore) {
    fake_driver driver;
    {
        client_port port;
        EXPECT_TRUE(port.connect());
        EXPECT_TRUE(driver.closed.empty());
    }
    EXPECT_EQ(driver.closed, (std::vector<HANDLE>{fake_driver::device, fake_driver::semaphore}));
}

TEST(Connect, destruction_of_a_closed_port_closes_nothing) {
    fake_driver driver;
    driver.present = false;
    {
        client_port port;
        EXPECT_FALSE(port.connect());
    }
    EXPECT_TRUE(driver.closed.empty());
}

TEST(Connect, lock_spins_a_hundred_times) {
    fake_driver driver;
    const client_port port;
    EXPECT_EQ(driver.spin_counts, std::vector<DWORD>{100});
}

// Threads that ask while one of them is opening either wait or come later; none sees a port without section.
TEST(Connect, many_threads_at_once_open_once_and_see_the_whole_port) {
    for (int round = 0; round < 20; ++round) {
        fake_driver driver;
        driver.open_delay_ms = 2;
        client_port port;
        struct shared_state {
            client_port& port;
            std::atomic<int> whole{0};
        } shared{port};
        std::array<HANDLE, 8> threads{};
        for (HANDLE& thread : threads) {
            thread = CreateThread(
                nullptr, 0,
                [](void* parameter) -> DWORD {
                    auto& state = *static_cast<shared_state*>(parameter);
                    if (state.port.connect() && state.port.status().state == 1) {
                        ++state.whole;
                    }
                    return 0;
                },
                &shared, 0, nullptr);
        }
        WaitForMultipleObjects(threads.size(), threads.data(), TRUE, INFINITE);
        EXPECT_EQ(shared.whole, 8);
        EXPECT_EQ(driver.opened.size(), 1u);
        EXPECT_EQ(driver.controlled.size(), 1u);
        // Closing goes through the fake: these few handles live until the program ends.
    }
}

}  // namespace
