#include "tests/ui/window/shell_window.h"

#include <gtest/gtest.h>

namespace ov::test {

namespace {

constexpr DWORD end_limit_ms = 10000;

}  // namespace

shell_window::shell_window(const std::wstring& more_arguments) : process_(L"--script " + more_arguments) {
    (void)ask("wait");
}

shell_window::~shell_window() {
    process_.close_input();  // The end of its script closes the window.
    DWORD exit_code = 0;
    EXPECT_TRUE(process_.wait(end_limit_ms, exit_code)) << "shellhost did not end by itself";
    EXPECT_EQ(exit_code, 0U);
}

std::vector<std::string> shell_window::ask(const std::string& command) {
    process_.write_line(command);
    std::vector<std::string> lines;
    std::string line;
    while (process_.read_line(line)) {
        if (line == "ok") {
            return lines;
        }
        if (line.rfind("error: ", 0) == 0) {
            ADD_FAILURE() << command << ": " << line;
            return lines;
        }
        lines.push_back(line);
    }
    ADD_FAILURE() << command << ": shellhost ended";
    return lines;
}

void shell_window::tell(std::initializer_list<const char*> commands) {
    for (const char* command : commands) {
        (void)ask(command);
    }
}

std::string shell_window::ask_line(const std::string& command) {
    const auto lines = ask(command);
    EXPECT_EQ(lines.size(), 1U) << command;
    return lines.empty() ? std::string() : lines.front();
}

}  // namespace ov::test
