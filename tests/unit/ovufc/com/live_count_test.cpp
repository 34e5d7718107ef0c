#include "ovufc/com/live_count.h"

#include <windows.h>

#ifdef _MSC_VER
#include <intrin.h>
#else
// Clang's own intrin.h and the one of mingw-w64 get in each other's way.
#include <x86gprintrin.h>
#endif

#include <gtest/gtest.h>

#include <array>
#include <atomic>

#include "ovufc/win/handle.h"

namespace ov::com {
namespace {

TEST(LiveCount, raised_and_lowered_counts_up_and_down) {
    live_count count;
    EXPECT_EQ(count.value(), 0);
    count.raise();
    count.raise();
    EXPECT_EQ(count.value(), 2);
    count.lower();
    EXPECT_EQ(count.value(), 1);
}

// Another thread may come in between any two instructions: here one does after each.
live_count* stepped = nullptr;
int interruptions = 0;

LONG CALLBACK raise_at_each_step(EXCEPTION_POINTERS* pointers) {
    constexpr DWORD trap_flag = 0x100;
    if (pointers->ExceptionRecord->ExceptionCode != EXCEPTION_SINGLE_STEP) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    if (stepped != nullptr) {
        stepped->raise();
        ++interruptions;
        pointers->ContextRecord->EFlags |= trap_flag;
    }
    return EXCEPTION_CONTINUE_EXECUTION;
}

template <class Change>
void change_step_by_step(live_count& count, Change change) {
    constexpr unsigned trap_flag = 0x100;
    void* const handler = AddVectoredExceptionHandler(1, raise_at_each_step);
    interruptions = 0;
    stepped = &count;
    __writeeflags(__readeflags() | trap_flag);
    change();
    stepped = nullptr;
    RemoveVectoredExceptionHandler(handler);
}

TEST(LiveCount, interrupted_at_any_instruction_loses_nothing) {
    live_count count;
    change_step_by_step(count, [&] { count.raise(); });
    EXPECT_GT(interruptions, 0);
    EXPECT_EQ(count.value(), interruptions + 1);

    live_count other;
    change_step_by_step(other, [&] { other.lower(); });
    EXPECT_GT(interruptions, 0);
    EXPECT_EQ(other.value(), interruptions - 1);
}

// The same with threads that run side by side, for changes in one instruction that do not lock the memory.
TEST(LiveCount, changed_from_several_threads_loses_nothing) {
    constexpr DWORD long_enough_ms = 500;  // for the threads to get into each other's way on a busy machine
    struct shared_state {
        live_count count;
        std::atomic<bool> over = false;
    } shared;
    std::array<win::unique_kernel_handle, 4> threads;
    for (auto& thread : threads) {
        thread.reset(CreateThread(
            nullptr, 0,
            [](void* context) -> DWORD {
                auto& state = *static_cast<shared_state*>(context);
                while (!state.over) {
                    state.count.raise();
                    state.count.lower();
                }
                state.count.raise();
                return 0;
            },
            &shared, 0, nullptr));
    }
    Sleep(long_enough_ms);
    shared.over = true;
    for (auto& thread : threads) {
        ASSERT_EQ(WaitForSingleObject(thread.get(), 30'000), WAIT_OBJECT_0);
    }
    EXPECT_EQ(shared.count.value(), 4);
}

}  // namespace
}  // namespace ov::com
