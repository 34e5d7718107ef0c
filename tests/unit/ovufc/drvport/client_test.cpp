#include "ovufc/ipc/drvport/client.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

namespace drvport = ov::ipc::drvport;
using ov::test::fake_driver;

// Each test has a process client of its own; the one made at start was never opened.
class Client : public testing::Test {
  protected:
    Client() { drvport::process_client = std::make_unique<drvport::client>(); }
    ~Client() override { drvport::process_client.reset(); }

    fake_driver driver;
    orv_request request{};
    std::array<char, ORV_REPLY_LIMIT_BYTES> buffer{};
    std::uint32_t reply_bytes = 0;
};

TEST_F(Client, status_words_are_the_drivers) {
    driver.status().state = 5;
    driver.status().generation = 6;
    driver.status().flags = 7;
    EXPECT_TRUE(drvport::connect());
    EXPECT_EQ(drvport::state(), 5u);
    EXPECT_EQ(drvport::generation(), 6u);
    EXPECT_EQ(drvport::flags(), 7u);
}

TEST_F(Client, absent_driver_reads_as_zero) {
    driver.present = false;
    driver.status().generation = 6;
    driver.status().flags = 7;
    EXPECT_FALSE(drvport::connect());
    EXPECT_EQ(drvport::state(), 0u);
    EXPECT_EQ(drvport::generation(), 0u);
    EXPECT_EQ(drvport::flags(), 0u);
    EXPECT_FALSE(drvport::transact(request, buffer.data(), reply_bytes));
}

TEST_F(Client, exchange_goes_through_the_port) {
    driver.on_signal = [this] {
        driver.slot(0).payload[0] = 'y';
        driver.slot(0).payload_bytes = 1;
        driver.slot(0).state = ORV_SLOT_REPLIED;
    };
    EXPECT_TRUE(drvport::transact(request, buffer.data(), reply_bytes));
    EXPECT_EQ(reply_bytes, 1u);
    EXPECT_EQ(buffer[0], 'y');
}

TEST_F(Client, default_time_out_is_thirty_seconds) {
    EXPECT_FALSE(drvport::transact(request, buffer.data(), reply_bytes));
    EXPECT_EQ(driver.naps.size(), 3001u);
}

TEST_F(Client, no_client_reads_as_an_absent_driver) {
    drvport::process_client.reset();
    EXPECT_FALSE(drvport::connect());
    EXPECT_EQ(drvport::state(), 0u);
    EXPECT_EQ(drvport::generation(), 0u);
    EXPECT_EQ(drvport::flags(), 0u);
    EXPECT_FALSE(drvport::transact(request, buffer.data(), reply_bytes));
    EXPECT_TRUE(drvport::transact(request, nullptr, reply_bytes));
}

}  // namespace
