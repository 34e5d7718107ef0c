#include "testkit/process/child_process.h"

#include <gtest/gtest.h>

namespace {

using ov::test::child_process;

const std::wstring command_interpreter = L"C:\\windows\\system32\\cmd.exe";
// Runs for half a minute.
const std::wstring slow_program = L"C:\\windows\\system32\\ping.exe";
const std::vector<std::wstring> slow_arguments = {L"-n", L"30", L"127.0.0.1"};

TEST(ChildProcess, child_that_ends_gives_its_exit_code) {
    child_process child(command_interpreter, {L"/c", L"exit", L"7"});
    EXPECT_EQ(child.wait(20000), 7u);
}

TEST(ChildProcess, child_that_runs_is_not_waited_for_longer_than_asked) {
    child_process child(slow_program, slow_arguments);
    EXPECT_FALSE(child.wait(50).has_value());
}

TEST(ChildProcess, killed_child_has_ended) {
    child_process child(slow_program, slow_arguments);
    child.kill();
    EXPECT_EQ(child.wait(0), 0xDEADu);
}

TEST(ChildProcess, missing_program_throws) {
    EXPECT_THROW(child_process(L"C:\\no such program.exe", {}), std::runtime_error);
}

}  // namespace
