#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <set>
#include <string>

#include "testkit/process/child_process.h"
#include "tests/unit/ovufc/runtime/guarded_sample.h"

namespace ov::test {
namespace {

std::optional<DWORD> end_after_writing(int count) {
    return child_process(this_program(), {L"write-zeros", std::to_wstring(count)}).wait(20'000);
}

TEST(StackGuard, array_within_its_bounds_is_written) {
    EXPECT_EQ(end_after_writing(16), 0U);
}

TEST(StackGuard, array_written_past_its_end_ends_the_process) {
    EXPECT_EQ(end_after_writing(48), static_cast<DWORD>(STATUS_STACK_BUFFER_OVERRUN));
}

TEST(StackGuard, number_is_another_one_at_each_load) {
    constexpr std::size_t loads = 20;
    std::set<std::uintptr_t> numbers;
    for (std::size_t i = 0; i < loads; ++i) {
        numbers.insert(guarded_sample().guard_number());
    }
    EXPECT_EQ(numbers.size(), loads);
}

}  // namespace
}  // namespace ov::test
