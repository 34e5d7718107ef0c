#include "testkit/memory/failing_allocations.h"

#include <gtest/gtest.h>

#include <bitset>
#include <memory>
#include <new>
#include <vector>

namespace {

using ov::test::fail_each_allocation;
using ov::test::failing_allocations;
using mode = failing_allocations::mode;

const HMODULE program = GetModuleHandleW(nullptr);

// Which of three allocations succeed.
std::vector<bool> three_allocations(failing_allocations& memory, int first_to_fail) {
    std::unique_ptr<int> made[3];
    memory.start(first_to_fail);
    for (auto& each : made) {
        each.reset(new (std::nothrow) int);
    }
    memory.pause();
    return {made[0] != nullptr, made[1] != nullptr, made[2] != nullptr};
}

TEST(FailingAllocations, one_failure_is_the_nth_allocation_alone) {
    failing_allocations memory(program, mode::once);
    EXPECT_EQ(three_allocations(memory, 2), (std::vector<bool>{true, false, true}));
    EXPECT_TRUE(memory.met());
    EXPECT_EQ(three_allocations(memory, 4), (std::vector<bool>{true, true, true}));
    EXPECT_FALSE(memory.met());
}

TEST(FailingAllocations, failure_for_good_is_the_nth_allocation_and_all_that_follow) {
    failing_allocations memory(program, mode::from_then_on);
    EXPECT_EQ(three_allocations(memory, 2), (std::vector<bool>{true, false, false}));
}

TEST(FailingAllocations, failures_at_random_are_six_in_a_hundred_and_the_same_each_time) {
    failing_allocations memory(program, mode::at_random);
    const auto failures = [&](int series) {
        std::bitset<1000> failed;
        memory.start(series);
        for (std::size_t i = 0; i < failed.size(); ++i) {
            failed[i] = std::unique_ptr<int>(new (std::nothrow) int) == nullptr;
        }
        memory.pause();
        return failed;
    };
    const auto first = failures(1);
    EXPECT_TRUE(memory.met());
    EXPECT_NEAR(static_cast<double>(first.count()), 60, 20);
    EXPECT_EQ(failures(1), first);
    EXPECT_NE(failures(2), first);
}

TEST(FailingAllocations, allocation_while_paused_does_not_count) {
    failing_allocations memory(program, mode::once);
    memory.start(1);
    memory.pause();
    const std::unique_ptr<int> made(new (std::nothrow) int);
    EXPECT_NE(made, nullptr);
    EXPECT_FALSE(memory.met());
}

TEST(FailingAllocations, allocation_of_another_thread_does_not_count) {
    failing_allocations memory(program, mode::from_then_on);
    memory.start(1);
    const HANDLE thread = CreateThread(
        nullptr, 0,
        [](void*) -> DWORD { return std::unique_ptr<int>(new (std::nothrow) int) != nullptr ? 1 : 0; },
        nullptr, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    memory.pause();
    DWORD succeeded = 0;
    GetExitCodeThread(thread, &succeeded);
    CloseHandle(thread);
    EXPECT_EQ(succeeded, 1u);
}

TEST(FailingAllocations, new_throws_where_it_fails) {
    failing_allocations memory(program, mode::once);
    memory.start(1);
    EXPECT_THROW(static_cast<void>(std::make_unique<int>(1)), std::bad_alloc);
}

TEST(FailEachAllocation, every_allocation_of_a_scene_fails_in_turn) {
    std::vector<int> made;
    made.reserve(10);
    const int failures = fail_each_allocation(program, mode::once, [&](auto&) {
        int whole = 0;
        for (int i = 0; i != 3; ++i) {
            whole += std::unique_ptr<int>(new (std::nothrow) int) != nullptr ? 1 : 0;
        }
        made.push_back(whole);
    });
    EXPECT_EQ(failures, 3);
    EXPECT_EQ(made, (std::vector<int>{2, 2, 2, 3}));
}

}  // namespace
