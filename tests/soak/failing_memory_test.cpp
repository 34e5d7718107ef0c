// Allocations of the module fail at random on every main path: the path comes to one of the ends that are
// documented for it, nothing is left over, and with memory it works again.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <regex>
#include <string>

#include "testkit/checks/handle_ledger.h"
#include "testkit/memory/failing_allocations.h"
#include "testkit/process/process_costs.h"
#include "tests/soak/effort.h"
#include "tests/soak/main_paths.h"
#include "tests/soak/outcome.h"

namespace ov::test {
namespace {

class FailingMemory : public main_paths {
  protected:
    // `documented` are the ends of `path` where memory lacks; beside them there is the one that it has with
    // memory.
    void expect_documented(const std::function<outcome()>& path, const std::string& documented) {
        const outcome whole = path();  // the port to the driver stays open from now on
        const std::regex ends("none|" + documented);
        fail_at_random(path, whole, ends, 0);
        const process_costs before;
        const int rounds = static_cast<int>(effort(2, 40));
        for (int round = 1; round <= rounds; ++round) {
            fail_at_random(path, whole, ends, round);
        }
        EXPECT_THAT(process_costs().grown_since(before, 3), testing::IsEmpty());
    }

    void fail_at_random(const std::function<outcome()>& path, const outcome& whole,
                        const std::regex& documented, int round) {
        constexpr int series_a_round = 100;
        const handle_ledger ledger(module_.handle());
        failing_allocations memory(module_.handle(), failing_allocations::mode::at_random);
        int failures = 0;
        for (int i = 1; i <= series_a_round; ++i) {
            const int series = round * series_a_round + i;
            memory.start(series);
            const outcome seen = path();
            memory.pause();
            EXPECT_TRUE(seen == whole || (memory.met() && std::regex_match(seen, documented)))
                << "series " << series << ": " << seen;
            EXPECT_EQ(path(), whole) << "after series " << series;
            service_.forget_requests();  // it keeps each text
            failures += memory.met() ? 1 : 0;
        }
        EXPECT_GE(failures, 5) << "the path does not allocate what it should";
        // The host's menu takes its submenus with it.
        EXPECT_THAT(ledger.outstanding(), testing::Each("CreateMenu"));
    }
};

// No object; no selection that can be read; a folder that is taken for unprotected; a command that cannot be
// sent.
TEST_F(FailingMemory, right_click_on_a_folder) {
    expect_documented([&] { return right_click_on_a_folder(); },
                      " 0 0 80070057 80070057 80070057| 0 [25] (0|8000ffff|8007000e) 0 0");
}

// Not known as tracked; a list of chronels that cannot be read.
TEST_F(FailingMemory, dialog_of_a_tracked_file) {
    expect_documented([&] { return dialog_of_a_tracked_file(); }, " 0 0 80070057| 0 1 (8000ffff|8007000e)");
}

// Both tell the user, not the shell.
TEST_F(FailingMemory, restore) {
    expect_documented([&] { return restore(); }, " 0 0");
}

TEST_F(FailingMemory, addons) {
    expect_documented([&] { return addons(); }, " 0 0");
}

// No list, an item less, or no document, so all standard folders; no location of that name; no text.
TEST_F(FailingMemory, folder) {
    expect_documented(
        [&] { return folder(); },
        " (0 [0128]|8007000e 0) (80070057|0 (0|8007000e) (0|8007000e) (0|8007000e) (0|8007000e))");
}

}  // namespace
}  // namespace ov::test
