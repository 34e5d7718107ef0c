#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "service/calls.h"
#include "testkit/process/module_attach.h"
#include "testkit/service/scripted_service.h"
#include "tools/command_line/program.h"

/// Times a get_folder_status exchange over the real driver with a service that answers at once:
///
///     scripts/wine-run.sh --driver -- build/x64-release/bin/bench_exchange.exe [ROUNDS]
///
/// A pause before each exchange lets the service fall asleep, as it is when a user right-clicks: one that is
/// still awake takes the request before it is signalled. The client looks for its reply at once and then
/// every 10 ms, so the figures fall into two groups.
namespace {

constexpr int default_rounds = 200;
constexpr unsigned most_rounds = 1'000'000;
constexpr int warm_up_rounds = 5;
constexpr DWORD pause_ms = 25;

double now_ms() {
    LARGE_INTEGER ticks{};
    LARGE_INTEGER per_second{};
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&per_second);
    return 1000.0 * static_cast<double>(ticks.QuadPart) / static_cast<double>(per_second.QuadPart);
}

/// Negative when the exchange failed: a failure is fast, and no figure.
double one_exchange_ms() {
    bool restricted = false;
    bool exports_available = false;
    Sleep(pause_ms);
    const double started = now_ms();
    const bool is_protected =
        ov::service::get_folder_status(L"C:\\Users\\Public\\Documents", restricted, exports_available);
    const double taken = now_ms() - started;
    return is_protected && exports_available ? taken : -1;
}

int run(ov::command_line::arguments& words) {
    int rounds = default_rounds;
    if (!words.is_empty()) {
        rounds = static_cast<int>(
            ov::command_line::to_number(L"ROUNDS", words.take_word(L"a number"), 1, most_rounds));
    }
    words.expect_end();
    ov::test::scripted_service service(
        [](const auto&) { return R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"full"}})"; });
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);

    std::vector<double> taken_ms;
    for (int round = -warm_up_rounds; round != rounds; ++round) {
        const double taken = one_exchange_ms();
        if (taken < 0) {
            std::fprintf(stderr, "an exchange failed\n");
            return 1;
        }
        if (round >= 0) {
            taken_ms.push_back(taken);
        }
    }
    std::sort(taken_ms.begin(), taken_ms.end());
    std::printf(
        "get_folder_status exchange, %d rounds: median %.2f ms, 90th percentile %.2f ms, slowest %.2f ms\n",
        rounds, taken_ms[taken_ms.size() / 2], taken_ms[taken_ms.size() * 9 / 10], taken_ms.back());
    return 0;
}

}  // namespace

int main() {
    return ov::command_line::run_program(L"bench_exchange",
                                         L"bench_exchange [ROUNDS]\n\nTimes ROUNDS exchanges (200).",
                                         ov::command_line::words_of_process(), run);
}
