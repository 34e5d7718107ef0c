#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>

#include "ovufc/win/handle.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/processor_time.h"
#include "testkit/service/scripted_service.h"
#include "tests/driver/exchange.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::ask;
using ov::test::import_patch;
using ov::test::processor_time_us;
using ov::test::scripted_reply;
using ov::test::scripted_request;
using ov::test::scripted_service;

LONGLONG now_us() {
    LARGE_INTEGER ticks{};
    LARGE_INTEGER ticks_per_second{};
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&ticks_per_second);
    return ticks.QuadPart * 1'000'000 / ticks_per_second.QuadPart;
}

// Finer than a nap can be: works for as long, as a service does.
void work_for(LONGLONG length_us) {
    const LONGLONG started_us = now_us();
    while (now_us() - started_us < length_us) {
    }
}

// What the port does while it waits, counted through this program's import table.
class counted_waits {
  public:
    counted_waits() {
        real_sleep = sleep_.original();
        real_switch = switch_.original();
        naps = 0;
        yields = 0;
    }

    static inline volatile LONG naps = 0;
    static inline volatile LONG yields = 0;

  private:
    static DWORD WINAPI sleep(DWORD length_ms, BOOL alertable) {
        InterlockedIncrement(&naps);
        return real_sleep(length_ms, alertable);
    }
    static BOOL WINAPI switch_thread() {
        InterlockedIncrement(&yields);
        return real_switch();
    }

    static inline decltype(SleepEx)* real_sleep = nullptr;
    static inline decltype(SwitchToThread)* real_switch = nullptr;
    import_patch<decltype(SleepEx)> sleep_{GetModuleHandleW(nullptr), "kernel32.dll", "SleepEx", sleep};
    import_patch<decltype(SwitchToThread)> switch_{GetModuleHandleW(nullptr), "kernel32.dll",
                                                   "SwitchToThread", switch_thread};
};

class Waiting : public testing::TestWithParam<LONGLONG> {};

TEST_P(Waiting, service_that_takes_its_time_is_heard_in_the_end) {
    const LONGLONG work_us = GetParam();
    scripted_service service([work_us](const scripted_request& request) {
        work_for(work_us);
        return scripted_reply("re: " + request.text);
    });
    client_port port;
    for (int i = 0; i < 5; ++i) {
        const LONGLONG started_us = now_us();
        const auto result = ask(port, std::to_string(i));
        const LONGLONG taken_us = now_us() - started_us;
        EXPECT_EQ(result.reply, "re: " + std::to_string(i));
        EXPECT_GE(taken_us, work_us);
    }
}

INSTANTIATE_TEST_SUITE_P(Microseconds, Waiting, testing::Values(0, 100, 500, 1000, 5000, 20'000, 100'000),
                         [](const auto& info) { return std::to_string(info.param); });

// The pauses let the service fall asleep, as it is when a person clicks: one that is awake may answer while
// it is being signalled.
TEST(Wait, service_that_answers_at_once_is_heard_without_a_nap) {
    constexpr int exchanges = 40;
    scripted_service service([](const scripted_request&) { return "at once"; });
    client_port port;
    ASSERT_TRUE(ask(port, "warm").ok);
    const counted_waits waits;
    for (int i = 0; i < exchanges; ++i) {
        Sleep(20);
        ASSERT_TRUE(ask(port, "x").ok);
    }
    EXPECT_GT(waits.yields, 0);
    EXPECT_LT(waits.naps, exchanges / 4);
}

TEST(Wait, service_that_is_silent_costs_no_processor) {
    constexpr DWORD wait_ms = 2000;
    scripted_service service([](const scripted_request&) -> std::optional<scripted_reply> { return {}; });
    client_port port(wait_ms);
    ASSERT_TRUE(port.connect());
    const counted_waits waits;
    const LONGLONG started_us = now_us();
    const LONGLONG worked_us = processor_time_us();
    EXPECT_FALSE(ask(port, "silence").ok);
    EXPECT_GE(now_us() - started_us, wait_ms * 1000);
    EXPECT_LT(processor_time_us() - worked_us, wait_ms * 1000 / 5);
    EXPECT_GT(waits.naps, 10);
}

// What was spent may not grow with the number of those who wait.
TEST(Wait, clients_of_a_service_that_is_silent_cost_no_processor_together) {
    constexpr DWORD wait_ms = 2000;
    constexpr int clients = 4;
    scripted_service service([](const scripted_request&) -> std::optional<scripted_reply> { return {}; });
    client_port port(wait_ms);
    ASSERT_TRUE(port.connect());
    const LONGLONG worked_us = processor_time_us();
    std::array<ov::win::unique_kernel_handle, clients> threads;
    for (auto& thread : threads) {
        const auto wait = [](void* waited_on) WINAPI -> DWORD {
            return ask(*static_cast<client_port*>(waited_on), "silence").ok ? 1 : 0;
        };
        thread.reset(CreateThread(nullptr, 0, wait, &port, 0, nullptr));
        ASSERT_TRUE(thread);
    }
    for (const auto& thread : threads) {
        WaitForSingleObject(thread.get(), INFINITE);
        DWORD answered = 1;
        GetExitCodeThread(thread.get(), &answered);
        EXPECT_EQ(answered, 0u);
    }
    EXPECT_LT(processor_time_us() - worked_us, wait_ms * 1000 / 4);
}

}  // namespace
