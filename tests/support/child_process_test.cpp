#include "tests/support/child_process.h"

#include <gtest/gtest.h>

namespace {

using ov::test::child_process;

const std::wstring command_interpreter = L"C:\\windows\\system32\\cmd.exe";

TEST(ChildProcess_test, ChildThatEnds_GivesItsExitCode) {
    child_process child(command_interpreter, {L"/c", L"exit", L"7"});
    EXPECT_EQ(child.wait(20000), 7u);
}

TEST(ChildProcess_test, ChildThatRuns_IsNotWaitedForLongerThanAsked) {
    child_process child(command_interpreter, {L"/k"});
    EXPECT_FALSE(child.wait(50).has_value());
}

TEST(ChildProcess_test, KilledChild_HasEnded) {
    child_process child(command_interpreter, {L"/k"});
    child.kill();
    EXPECT_EQ(child.wait(0), 0xDEADu);
}

TEST(ChildProcess_test, MissingProgram_Throws) {
    EXPECT_THROW(child_process(L"C:\\no such program.exe", {}), std::runtime_error);
}

}  // namespace
