// A port whose device handle is lost while an exchange waits. Nothing in the port loses it; the wait asks all
// the same at each poll, so the handle is taken from under it here.

#include <gtest/gtest.h>

#include <array>

#include "ovufc/ipc/drvport/client_port.h"
#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::fake_driver;

// Reaches the private handle: an explicit instantiation may name what is private.
using device_member = std::atomic<HANDLE> client_port::*;
device_member device_of_port();
template <device_member member>
struct opens_up {
    friend device_member device_of_port() { return member; }
};
template struct opens_up<&client_port::device>;

class LostDevice : public testing::Test {
  protected:
    LostDevice() {
        driver.on_nap = [this] {
            if (driver.naps.size() == 3) {
                port.*device_of_port() = INVALID_HANDLE_VALUE;
            }
        };
    }
    ~LostDevice() override { port.*device_of_port() = fake_driver::device; }

    bool transact() { return port.transact(request, buffer.data(), reply_bytes); }

    fake_driver driver;
    client_port port;
    orv_request request{};
    std::array<char, ORV_REPLY_LIMIT_BYTES> buffer{};
    std::uint32_t reply_bytes = 0;
};

TEST_F(LostDevice, port_that_cannot_be_opened_again_ends_the_wait_at_the_next_poll) {
    ASSERT_TRUE(port.connect());
    driver.present = false;
    driver.opened.clear();
    EXPECT_FALSE(transact());
    EXPECT_EQ(driver.naps.size(), 3u);
    EXPECT_EQ(driver.opened.size(), 1u) << "it was tried once more";
    EXPECT_EQ(driver.slot(0).abandoned, 1u);
    EXPECT_EQ(driver.slot(0).owner, GetCurrentProcessId());
}

TEST_F(LostDevice, port_that_opens_again_goes_on_waiting) {
    const auto lose_the_device = driver.on_nap;
    driver.on_nap = [&] {
        lose_the_device();
        if (driver.naps.size() == 5) {
            driver.slot(0).payload_bytes = 0;
            driver.slot(0).state = ORV_SLOT_REPLIED;
        }
    };
    EXPECT_TRUE(transact());
    EXPECT_EQ(driver.naps.size(), 5u);
    EXPECT_EQ(driver.opened.size(), 2u);
}

}  // namespace
