#include <gtest/gtest.h>

#include <array>
#include <atomic>

#include "ovufc/ipc/drvport/client_port.h"
#include "ovufc/win/handle.h"
#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::fake_driver;

TEST(Connect, NewPort_HasOpenedNothing) {
    fake_driver driver;
    const client_port port;
    EXPECT_TRUE(driver.opened.empty());
}

TEST(Connect, OpensTheDeviceForReadingAndSharedReading) {
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

TEST(Connect, AsksWithoutInputForTwentyFourBytesSynchronously) {
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

TEST(Connect, OpenPort_ShowsTheStatusBlock) {
    fake_driver driver;
    driver.status().generation = 77;
    client_port port;
    ASSERT_TRUE(port.connect());
    EXPECT_EQ(port.status().generation, 77u);
}

TEST(Connect, OpenPort_IsNotOpenedAgain) {
    fake_driver driver;
    client_port port;
    EXPECT_TRUE(port.connect());
    driver.present = false;
    EXPECT_TRUE(port.connect());
    EXPECT_EQ(driver.opened.size(), 1u);
    EXPECT_EQ(driver.controlled.size(), 1u);
}

TEST(Connect, AbsentDevice_IsFalseAndTriedAgainEachTime) {
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

TEST(Connect, FailedRequest_ClosesTheDeviceAndIsTriedAgain) {
    fake_driver driver;
    driver.answers_open = false;
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_EQ(driver.closed, std::vector<HANDLE>{fake_driver::device});
    driver.answers_open = true;
    EXPECT_TRUE(port.connect());
}

TEST(Connect, NullSemaphore_ClosesTheDeviceAndIsTriedAgain) {
    fake_driver driver;
    driver.gives_semaphore = false;
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_EQ(driver.closed, std::vector<HANDLE>{fake_driver::device});
    driver.gives_semaphore = true;
    EXPECT_TRUE(port.connect());
}

TEST(Connect, NullSection_ClosesBothHandles) {
    fake_driver driver;
    driver.section_word = 0;
    client_port port;
    EXPECT_FALSE(port.connect());
    EXPECT_EQ(driver.closed, (std::vector<HANDLE>{fake_driver::semaphore, fake_driver::device}));
}

TEST(Connect, Destruction_ClosesDeviceThenSemaphore) {
    fake_driver driver;
    {
        client_port port;
        EXPECT_TRUE(port.connect());
        EXPECT_TRUE(driver.closed.empty());
    }
    EXPECT_EQ(driver.closed, (std::vector<HANDLE>{fake_driver::device, fake_driver::semaphore}));
}

TEST(Connect, DestructionOfAClosedPort_ClosesNothing) {
    fake_driver driver;
    driver.present = false;
    {
        client_port port;
        EXPECT_FALSE(port.connect());
    }
    EXPECT_TRUE(driver.closed.empty());
}

TEST(Connect, Lock_SpinsAHundredTimes) {
    fake_driver driver;
    const client_port port;
    EXPECT_EQ(driver.spin_counts, std::vector<DWORD>{100});
}

// Threads that ask while one of them is opening either wait or come later; none sees a port without section.
TEST(Connect, ManyThreadsAtOnce_OpenOnceAndSeeTheWholePort) {
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
