// Each call that the module makes of Windows fails in turn, on every main path: the path comes to one of the
// ends that are documented for it, nothing is left over, and the next time it works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "testkit/checks/handle_ledger.h"
#include "testkit/imports/failing_calls.h"
#include "testkit/process/process_costs.h"
#include "tests/soak/effort.h"
#include "tests/soak/main_paths.h"
#include "tests/soak/outcome.h"

namespace ov::test {
namespace {

class FailingCalls : public main_paths {
  protected:
    // `whole` is what `path` comes to when nothing fails, `documented` what else it may come to.
    void expect_documented(const std::function<outcome()>& path, const outcome& whole,
                           const std::set<outcome>& documented) {
        fail_each(path, whole, documented);
        const process_costs before;
        const unsigned rounds = effort(0, 4);
        for (unsigned round = 0; round < rounds; ++round) {
            fail_each(path, whole, documented);
        }
        // A block for each round would be one that some failure leaves over.
        EXPECT_THAT(process_costs().grown_since(before, 3), testing::IsEmpty());
    }

    void fail_each(const std::function<outcome()>& path, const outcome& whole,
                   const std::set<outcome>& documented) {
        EXPECT_EQ(path(), whole);  // the port to the driver stays open from now on
        const handle_ledger ledger(module_.handle());
        const int failures = fail_each_call(
            module_.handle(), most_calls_of_one_function(),
            [&](const failing_call& call, const std::string& what) {
                const outcome seen = path();
                if (call.met()) {
                    EXPECT_TRUE(seen == whole || documented.contains(seen)) << what << " fails: " << seen;
                    EXPECT_EQ(path(), whole) << "once " << what << " has failed";
                } else {
                    EXPECT_EQ(seen, whole) << what << " was not made";
                }
                service_.forget_requests();  // it keeps each text
            });
        EXPECT_GE(failures, 5) << "the path does not call what it should";
        // The host's menu takes its submenus with it.
        EXPECT_THAT(ledger.outstanding(), testing::Each("CreateMenu"));
    }
};

TEST_F(FailingCalls, right_click_on_a_folder) {
    // No menu to put items into; no selection that can be read.
    expect_documented([&] { return right_click_on_a_folder(); }, " 0 5 0 0 0",
                      {" 0 80070032 0 0 0", " 0 0 80070057 80070057 80070057"});
}

TEST_F(FailingCalls, dialog_of_a_tracked_file) {
    // Not known as tracked; a list of chronels that cannot be read.
    expect_documented([&] { return dialog_of_a_tracked_file(); }, " 0 1 0",
                      {" 0 0 80070057", " 0 1 8000ffff"});
}

TEST_F(FailingCalls, restore) {
    expect_documented([&] { return restore(); }, " 0 0", {});
}

TEST_F(FailingCalls, addons) {
    expect_documented([&] { return addons(); }, " 0 0", {});
}

TEST_F(FailingCalls, folder) {
    expect_documented([&] { return folder(); }, " 0 2 0 0 0 0 0",
                      {
                          " 0 0 0 0 0 0 0",         // no memory for the first entry,
                          " 0 1 0 0 0 0 0",         // the second,
                          " 0 2 8007000e",          // the one that is asked for by name,
                          " 0 2 0 8007000e 0 0 0",  // its display name,
                          " 0 2 0 0 8007000e 0 0",  // its path,
                          " 0 2 0 0 0 8007000e 0",  // its type;
                          " 0 8 80070057",          // no document, so all standard folders,
                          " 0 2 80070057",          // no location of that name,
                          " 0 2 0 0 0 0 8007000e",  // no place where it could be,
                          " 0 2 0 0 0 0 80004005",  // no desktop
                      });
}

}  // namespace
}  // namespace ov::test
