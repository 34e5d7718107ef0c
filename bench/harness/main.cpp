// Runs the paths and prints every sample, for scripts/bench_report.py:
//
//     scripts/wine-run.sh --driver --display --timeout 300 -- build/x64-release/bin/orv_bench.exe ["[tag]"]

#include <windows.h>
#include <objbase.h>

#include <array>
#include <cstdio>
#include <vector>

#define CATCH_CONFIG_RUNNER
#include "bench/harness/catch2.h"

namespace {

// One line a series: path, candidate, then the samples in nanoseconds.
class sample_printer : public Catch::TestEventListenerBase {
  public:
    using TestEventListenerBase::TestEventListenerBase;

    void benchmarkEnded(const Catch::BenchmarkStats<>& stats) override {
        std::printf("samples\t%s", stats.info.name.c_str());
        for (const auto& sample : stats.samples) {
            std::printf("\t%.0f", sample.count());
        }
        std::printf("\n");
        std::fflush(stdout);
    }
};

}  // namespace

CATCH_REGISTER_LISTENER(sample_printer)

// What the harness throws may end it.
int main(int argument_count, char** arguments) {  // NOLINT(bugprone-exception-escape)
    (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    // Few samples a series and many series: the candidates take turns. Ours come first.
    std::vector<const char*> words{arguments[0],
                                   "--benchmark-samples",
                                   "5",
                                   "--benchmark-no-analysis",
                                   "--benchmark-warmup-time",
                                   "1",
                                   "--out",
                                   "nul"};
    words.insert(words.end(), arguments + 1, arguments + argument_count);
    const int result = Catch::Session().run(static_cast<int>(words.size()), words.data());
    CoUninitialize();
    return result;
}
