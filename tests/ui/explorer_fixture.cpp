#include "tests/ui/explorer_fixture.h"

#include "testkit/process/shipped_module.h"

namespace ov::test {

namespace {

constexpr DWORD next_dialog_limit_ms = 10000;
constexpr DWORD poll_ms = 50;

}  // namespace

void explorer_fixture::SetUpTestSuite() {
    ASSERT_EQ(shipped_module().register_server(), S_OK);
}

void explorer_fixture::TearDownTestSuite() {
    EXPECT_EQ(shipped_module().unregister_server(), S_OK);
}

explorer_fixture::explorer_fixture() : window_(std::make_unique<shell_window>()) {}

std::vector<std::string> explorer_fixture::dialog() {
    (void)window_->ask("wait-dialog");
    return window_->ask("dialogs");
}

std::vector<std::string> explorer_fixture::dialog_after(const std::vector<std::string>& earlier) {
    auto lines = dialog();
    for (DWORD waited = 0; waited < next_dialog_limit_ms && lines == earlier; waited += poll_ms) {
        Sleep(poll_ms);
        lines = dialog();
    }
    return lines;
}

std::vector<std::string> explorer_fixture::menu_of(const std::string& item) {
    (void)window_->ask("right-click " + item);
    (void)window_->ask("wait-menu");
    return window_->ask("menus");
}

std::string line_with(const std::vector<std::string>& lines, const std::string& text) {
    for (const std::string& line : lines) {
        if (line.find(text) != std::string::npos) {
            return line.substr(line.find_first_not_of(' '));
        }
    }
    return {};
}

}  // namespace ov::test
