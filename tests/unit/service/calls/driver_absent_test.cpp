#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "ovufc/ipc/drvport/client.h"
#include "service/calls.h"
#include "testkit/process/throw_count.h"
#include "testkit/service/scripted_service.h"
#include "tests/driver/driver_control.h"

namespace {

using namespace ov::service;  // the functions under test

/// The driver is stopped first, and started again before the next program needs it. A port that has once
/// opened the device keeps it, so this program is one test.
class DriverAbsent : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(ov::test::stop_driver()); }
    void TearDown() override { EXPECT_TRUE(ov::test::start_driver()); }
};

TEST_F(DriverAbsent, every_call_gives_its_failure_value_without_an_exception_until_the_driver_is_there) {
    const auto throws = ov::test::throws_so_far();
    ASSERT_FALSE(ov::ipc::drvport::connect());

    bool restricted = true;
    bool exports_available = false;
    EXPECT_FALSE(get_folder_status(L"C:\\", restricted, exports_available));
    EXPECT_TRUE(restricted);
    EXPECT_FALSE(exports_available);
    EXPECT_EQ(protect_folder(L"C:\\"), E_UNEXPECTED);
    EXPECT_EQ(protect_folder_as(L"C:\\", L"o"), E_UNEXPECTED);
    EXPECT_EQ(unprotect_folder(L"C:\\"), E_UNEXPECTED);
    EXPECT_EQ(export_folder(L"C:\\", export_kind::deleted_files), E_UNEXPECTED);
    EXPECT_EQ(get_file_chronels(L"f"), "");
    restore_file_chronel(L"f", "{}");
    open_file_chronel(L"f", "{}", L"n");
    std::int64_t createdOn = 11;
    std::int64_t sequenceNumber = 22;
    EXPECT_FALSE(get_restore_points(createdOn, sequenceNumber));
    EXPECT_EQ(createdOn, 11);
    EXPECT_EQ(sequenceNumber, 22);
    EXPECT_TRUE(get_restore_folders(1, 2).empty());
    EXPECT_TRUE(restore_from_point(1, 2));
    EXPECT_EQ(get_last_timestamp(), std::nullopt);
    EXPECT_EQ(get_protected_folders(), "");
    EXPECT_EQ(ov::test::throws_so_far(), throws);

    ASSERT_TRUE(ov::test::start_driver());
    const ov::test::scripted_service service([](const auto&) { return R"({"statusCode":0,"data":{}})"; });
    EXPECT_EQ(protect_folder(L"C:\\"), S_OK);
}

}  // namespace
