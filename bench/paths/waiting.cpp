// What it costs to wait for a service that takes its time, or says nothing.

#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bench/harness/catch2.h"
#include "bench/harness/compare.h"
#include "bench/paths/exchange.h"
#include "ovufc/ipc/drvport/client_port.h"
#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"
#include "testkit/process/processor_time.h"
#include "testkit/service/scripted_service.h"

namespace {

using ov::bench::exchange;
using ov::ipc::drvport::details::client_port;
using ov::test::processor_time_us;
using ov::test::scripted_reply;
using ov::test::scripted_service;

// Works for `length_us`, as a service does: a nap would not be as short.
void work_for(long length_us) {
    const auto started = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - started < std::chrono::microseconds(length_us)) {
    }
}

// Other work that would use every processor, for the length of a scope.
class busy_machine : private ov::noncopyable {
  public:
    busy_machine() {
        for (DWORD i = 0; i < GetActiveProcessorCount(ALL_PROCESSOR_GROUPS); ++i) {
            workers_.emplace_back(CreateThread(nullptr, 0, work, &is_over_, 0, nullptr));
        }
    }
    ~busy_machine() {
        is_over_ = true;
        for (const auto& worker : workers_) {
            WaitForSingleObject(worker.get(), INFINITE);
        }
    }

  private:
    static DWORD WINAPI work(void* is_over) {
        while (!*static_cast<const std::atomic<bool>*>(is_over)) {
        }
        return 0;
    }

    std::atomic<bool> is_over_ = false;
    std::vector<ov::win::unique_kernel_handle> workers_;
};

// How long a click waits for the answer; nothing is asked of these.
void measure_delays(const char* machine) {
    for (const long delay_us : {0L, 100L, 500L, 1000L, 5000L, 20'000L, 100'000L}) {
        const scripted_service service([delay_us](const auto&) {
            work_for(delay_us);
            return R"({"statusCode":0,"data":{}})";
        });
        client_port port;
        const std::string path = "service takes " + std::to_string(delay_us) + " us" + machine;
        ov::bench::compare(path.c_str(), {.pause_ms = 25, .rounds = 4},
                           {{"ours", [&] { ov::bench::require(exchange(port), "an exchange"); }, {}}});
    }
}

TEST_CASE("delays", "[served]") {
    measure_delays("");
}

TEST_CASE("delays of a busy machine", "[served]") {
    const busy_machine busy;
    measure_delays(", busy");
}

void print_processor_time(const char* candidate, const std::function<void()>& wait) {
    const LONGLONG before_us = processor_time_us();
    wait();
    std::printf("processor\ta wait of 10 s for nothing\t%s\t%lld\n", candidate,
                processor_time_us() - before_us);
}

// A stalled driver must not make its clients work.
TEST_CASE("silence", "[served]") {
    constexpr DWORD wait_ms = 10'000;
    const scripted_service service([](const auto&) -> std::optional<scripted_reply> { return {}; });
    client_port port(wait_ms);
    ov::bench::require(port.connect(), "connecting");
    print_processor_time("ours", [&] { ov::bench::require(!exchange(port), "silence"); });
    print_processor_time("naps of 10 ms alone", [] {
        const DWORD started_ms = GetTickCount();
        while (GetTickCount() - started_ms < wait_ms) {
            SleepEx(10, TRUE);
        }
    });
}

}  // namespace
