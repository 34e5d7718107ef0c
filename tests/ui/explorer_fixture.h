#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "testkit/process/watchdog.h"
#include "tests/ui/known_service.h"
#include "tests/ui/pictures/screenshot.h"
#include "tests/ui/window/shell_window.h"

namespace ov::test {

/// The registered module, a service with a known state behind the real driver, and a window of the small
/// Explorer at the namespace folder.
class explorer_fixture : public testing::Test {
  protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();

    explorer_fixture();

    /// Waits for a message box and gives its lines: "dialog" and its title first, then its texts.
    std::vector<std::string> dialog();
    /// The same for the box that takes the place of `earlier`.
    std::vector<std::string> dialog_after(const std::vector<std::string>& earlier);
    /// Opens the menu of an item of the view by a real right-click and gives its lines.
    std::vector<std::string> menu_of(const std::string& item);

    watchdog dog_{60'000};
    known_service service_;
    std::unique_ptr<shell_window> window_;
};

/// The first line that holds `text`, without blanks before it; empty when there is none.
[[nodiscard]] std::string line_with(const std::vector<std::string>& lines, const std::string& text);

}  // namespace ov::test
