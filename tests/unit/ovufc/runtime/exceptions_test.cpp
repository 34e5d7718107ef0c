// Exceptions in flight as our DLLs keep them. This program has them compiled in, in place of its own
// runtime's.
#include <windows.h>

#include <gtest/gtest.h>

#include "ovufc/win/handle.h"
#include "testkit/imports/import_patch.h"
#include "testkit/memory/failing_allocations.h"
#include "testkit/imports/unpatched.h"

namespace ov {
namespace {

win::unique_kernel_handle make_event() {
    return win::unique_kernel_handle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

/// A thread that handles the exception 1 until it is told to go on, and then throws it on.
struct first_thread {
    win::unique_kernel_handle is_handling = make_event();
    win::unique_kernel_handle go_on = make_event();
    int thrown_on = 0;

    void handle_and_throw_on() {
        try {
            throw 1;
        } catch (int) {
            SetEvent(is_handling.get());
            WaitForSingleObject(go_on.get(), 10000);
            throw;
        }
    }

    static DWORD WINAPI run(void* self) {
        auto& thread = *static_cast<first_thread*>(self);
        try {
            thread.handle_and_throw_on();
        } catch (int value) {
            thread.thrown_on = value;
        }
        return 0;
    }
};

TEST(Exceptions, thread_throws_on_its_own_while_another_handles_a_later_one) {
    first_thread first;
    const win::unique_kernel_handle thread(CreateThread(nullptr, 0, &first_thread::run, &first, 0, nullptr));
    ASSERT_EQ(WaitForSingleObject(first.is_handling.get(), 10000), WAIT_OBJECT_0);
    try {
        throw 2;
    } catch (int) {
        SetEvent(first.go_on.get());
        ASSERT_EQ(WaitForSingleObject(thread.get(), 10000), WAIT_OBJECT_0);
    }
    EXPECT_EQ(first.thrown_on, 1);
}

TEST(Exceptions, handlers_within_handlers_go_back_to_the_one_before) {
    int thrown_on = 0;
    try {
        try {
            throw 1;
        } catch (int) {
            try {
                throw 2;
            } catch (int) {
            }
            throw;
        }
    } catch (int value) {
        thrown_on = value;
    }
    EXPECT_EQ(thrown_on, 1);
}

TEST(Exceptions, two_in_flight_without_memory_are_kept_apart) {
    int outer_value = 0;
    int inner_value = 0;
    test::failing_allocations memory(GetModuleHandleW(nullptr),
                                     test::failing_allocations::mode::from_then_on);
    memory.start(1);
    try {
        throw 1;
    } catch (const int& outer) {
        try {
            throw 2;
        } catch (const int& inner) {
            outer_value = outer;
            inner_value = inner;
        }
    }
    memory.pause();
    EXPECT_EQ(outer_value, 1);
    EXPECT_EQ(inner_value, 2);
}

int frees = 0;

void count_and_free(void* block) {
    ++frees;
    static auto* const real = test::unpatched<void(void*)>(L"msvcrt.dll", "free");
    real(block);
}

TEST(Exceptions, memory_of_a_handled_one_is_given_back) {
    const test::import_patch<void(void*)> counting(GetModuleHandleW(nullptr), "msvcrt.dll;ucrtbase.dll",
                                                   "free", count_and_free);
    frees = 0;
    try {
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(frees, 1);
}

}  // namespace
}  // namespace ov
