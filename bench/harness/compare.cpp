#include "bench/harness/compare.h"

#include <cstdio>
#include <cstdlib>

#include "bench/harness/catch2.h"

namespace ov::bench {

void compare(const char* path, const conditions& under, const std::vector<candidate>& candidates) {
    std::printf("path\t%s\t%g\t%g\n", path, under.aim, under.quantile);
    for (int round = 0; round < under.rounds; ++round) {
        for (const candidate& measured : candidates) {
            Catch::Benchmark::Benchmark benchmark(std::string(path) + '\t' + measured.name);
            benchmark = [&](Catch::Benchmark::Chronometer meter) {
                if (measured.prepare) {
                    measured.prepare();
                }
                if (under.pause_ms != 0) {
                    Sleep(under.pause_ms);
                }
                meter.measure(measured.run);
            };
        }
    }
}

void require(bool worked, const char* what) {
    if (!worked) {
        std::fprintf(stderr, "bench: %s failed\n", what);
        std::_Exit(3);
    }
}

}  // namespace ov::bench
