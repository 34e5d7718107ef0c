#include "testkit/checks/lock_trace.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "ovufc/win/handle.h"
#include "ovufc/win/srw_lock.h"

namespace {

using ov::test::lock_trace;
using ov::win::exclusive_lock;
using ov::win::shared_lock;
using holds = std::vector<lock_trace::hold>;
using mode = lock_trace::mode;

TEST(LockTrace, locks_in_their_modes_are_noted_in_order) {
    SRWLOCK first = SRWLOCK_INIT;
    SRWLOCK second = SRWLOCK_INIT;
    const lock_trace locks(GetModuleHandleW(nullptr));
    { const shared_lock one(first); }
    { const exclusive_lock two(second); }
    EXPECT_EQ(locks.taken(), (holds{{&first, mode::shared}, {&second, mode::exclusive}}));
    EXPECT_TRUE(locks.held().empty());
    EXPECT_EQ(locks.most_at_once(), 1U);
}

TEST(LockTrace, lock_within_a_lock_is_seen_held_together) {
    SRWLOCK first = SRWLOCK_INIT;
    SRWLOCK second = SRWLOCK_INIT;
    const lock_trace locks(GetModuleHandleW(nullptr));
    {
        const exclusive_lock one(first);
        const shared_lock two(second);
        EXPECT_EQ(locks.held(), (holds{{&first, mode::exclusive}, {&second, mode::shared}}));
        EXPECT_FALSE(TryAcquireSRWLockShared(&first)) << "the lock itself works as ever";
    }
    EXPECT_TRUE(locks.held().empty());
    EXPECT_EQ(locks.most_at_once(), 2U);
}

TEST(LockTrace, lock_given_back_in_another_mode_is_a_failure) {
    SRWLOCK lock = SRWLOCK_INIT;
    lock_trace locks(GetModuleHandleW(nullptr));
    locks.note_taken(&lock, mode::shared);
    EXPECT_NONFATAL_FAILURE(locks.note_released(&lock, mode::exclusive), "was not held so");
}

TEST(LockTrace, other_threads_are_not_noted) {
    SRWLOCK lock = SRWLOCK_INIT;
    const lock_trace locks(GetModuleHandleW(nullptr));
    const ov::win::unique_kernel_handle thread(CreateThread(
        nullptr, 0,
        [](void* context) -> DWORD {
            const exclusive_lock held(*static_cast<SRWLOCK*>(context));
            return 0;
        },
        &lock, 0, nullptr));
    ASSERT_EQ(WaitForSingleObject(thread.get(), 10000), WAIT_OBJECT_0);
    EXPECT_TRUE(locks.taken().empty());
}

}  // namespace
