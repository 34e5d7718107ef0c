#include "testkit/process/processor_time.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using ov::test::processor_time_us;

TEST(ProcessorTime, work_counts_and_a_nap_does_not) {
    const LONGLONG before_us = processor_time_us();
    Sleep(200);
    const LONGLONG rested_us = processor_time_us();
    EXPECT_LE(rested_us - before_us, 50'000);
    const ULONGLONG started_ms = GetTickCount64();
    while (processor_time_us() - rested_us < 100'000 && GetTickCount64() - started_ms < 20'000) {
    }
    EXPECT_GE(processor_time_us() - rested_us, 100'000);
}

}  // namespace
