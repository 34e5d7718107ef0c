#include "tools/command_line/program.h"

#include <gtest/gtest.h>

namespace ov::command_line {
namespace {

int never_run(arguments&) {
    ADD_FAILURE() << "the program ran";
    return 1;
}

TEST(Program, help_is_given_wherever_it_stands) {
    for (const std::vector<std::wstring>& words : {std::vector<std::wstring>{L"--help"},
                                                   {L"-h"},
                                                   {L"--nonsense", L"--help"},
                                                   {L"menu", L"x", L"--help"}}) {
        EXPECT_EQ(run_program(L"p", L"help", words, never_run), 0);
    }
}

TEST(Program, version_is_given_wherever_it_stands) {
    EXPECT_EQ(run_program(L"p", L"help", {L"--version"}, never_run), 0);
    EXPECT_EQ(run_program(L"p", L"help", {L"menu", L"--version", L"x"}, never_run), 0);
}

TEST(Program, wrong_words_end_with_two) {
    EXPECT_EQ(run_program(L"p", L"help", {L"--nonsense"},
                          [](arguments& words) -> int {
                              words.expect_end();
                              return 0;
                          }),
              exit_usage);
}

TEST(Program, exit_code_is_that_of_the_body) {
    EXPECT_EQ(run_program(L"p", L"help", {}, [](arguments&) { return 7; }), 7);
}

}  // namespace
}  // namespace ov::command_line
