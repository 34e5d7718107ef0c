// The port's lock is for opening alone: whoever finds the device open does not meet it.

#include <gtest/gtest.h>

#include "ovufc/ipc/drvport/client_port.h"
#include "testkit/imports/unpatched.h"
#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::fake_driver;
using ov::test::import_patch;
using ov::test::unpatched;

int entered = 0;
int left = 0;

void WINAPI count_enter(CRITICAL_SECTION* section) {
    static auto* const real =
        unpatched<decltype(EnterCriticalSection)>(L"kernel32.dll", "EnterCriticalSection");
    ++entered;
    real(section);
}

void WINAPI count_leave(CRITICAL_SECTION* section) {
    static auto* const real =
        unpatched<decltype(LeaveCriticalSection)>(L"kernel32.dll", "LeaveCriticalSection");
    ++left;
    real(section);
}

class ConnectLock : public testing::Test {
  protected:
    /// Connects and counts how often this program enters a critical section meanwhile.
    static bool connect(client_port& port) {
        entered = left = 0;
        const HMODULE self = GetModuleHandleW(nullptr);
        const import_patch<decltype(EnterCriticalSection)> enter(self, "kernel32.dll", "EnterCriticalSection",
                                                                 count_enter);
        const import_patch<decltype(LeaveCriticalSection)> leave(self, "kernel32.dll", "LeaveCriticalSection",
                                                                 count_leave);
        return port.connect();
    }

    fake_driver driver;
    client_port port;
};

TEST_F(ConnectLock, open_port_is_reported_without_the_lock) {
    ASSERT_TRUE(port.connect());
    EXPECT_TRUE(connect(port));
    EXPECT_EQ(entered, 0);
}

TEST_F(ConnectLock, opening_holds_the_lock_once_and_leaves_it) {
    EXPECT_TRUE(connect(port));
    EXPECT_EQ(entered, 1);
    EXPECT_EQ(left, 1);
}

TEST_F(ConnectLock, failed_opening_leaves_the_lock) {
    driver.answers_open = false;
    EXPECT_FALSE(connect(port));
    EXPECT_EQ(entered, 1);
    EXPECT_EQ(left, 1);
}

}  // namespace
