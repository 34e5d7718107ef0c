// What two hundred openings leave behind in the host.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "companions/orvdialog/window/visual_styles.h"
#include "testkit/process/process_costs.h"
#include "tests/unit/companions/orvdialog/window/closed_dialogs.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {
namespace {

/// Windows are known by the lower half of their handles alone; the lowest are given first.
std::size_t windows() {
    std::size_t found = 0;
    for (std::uintptr_t handle = 2; handle < 0x2000; handle += 2) {
        found += IsWindow(reinterpret_cast<HWND>(handle)) != FALSE ? 1 : 0;
    }
    return found;
}

TEST(DialogOpenings, counter_of_windows_counts_a_planted_leak) {
    const auto make = [] {
        return CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    };
    const HWND first = make();  // the system adds windows of its own to a thread's first
    const std::size_t before = windows();
    const HWND second = make();
    EXPECT_EQ(windows(), before + 1);
    DestroyWindow(second);
    EXPECT_EQ(windows(), before);
    DestroyWindow(first);
}

/// Each dialog, in a library that is loaded for it and freed after it, as the module does.
void open_both_loaded() {
    EXPECT_EQ(open_protection(dialog_library()), 0U);
    EXPECT_EQ(open_versions(dialog_library()), 0U);
}

constexpr std::size_t labels_of_both = 7;
constexpr std::size_t tolerance = 40;

/// Wine's labels of common controls 6 keep one block of the heap each that they are given a font, whoever
/// makes them: how many blocks one costs here.
std::size_t blocks_a_label_keeps() {
    const visual_styles styles;
    const auto make_labels = [] {
        for (std::size_t i = 0; i < 2 * tolerance; ++i) {
            const HWND label = CreateWindowExW(0, L"Static", L"Label", WS_POPUP, 0, 0, 100, 30, nullptr,
                                               nullptr, nullptr, nullptr);
            SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
            DestroyWindow(label);
        }
    };
    make_labels();
    const test::process_costs before;
    make_labels();
    return test::process_costs().grown_since(before, tolerance).empty() ? 0 : 1;
}

TEST(DialogOpenings, two_hundred_cost_the_host_nothing) {
    const closing_hook hook;
    const auto open = [](int times) {
        for (int opening = 0; opening < times; ++opening) {
            open_both_loaded();
        }
    };
    const std::size_t blocks_of_labels = blocks_a_label_keeps() * labels_of_both * 100;
    open(10);  // what the system takes for itself, once
    const test::process_costs before;
    const std::size_t windows_before = windows();
    open(100);
    EXPECT_LE(windows(), windows_before + 2);
    const test::process_costs after;
    EXPECT_THAT(after.grown_since(before, tolerance + blocks_of_labels), testing::IsEmpty());
    EXPECT_THAT(after.grown_since(before, tolerance), testing::Each(testing::StartsWith("heap blocks")));
    EXPECT_EQ(closing_hook::closed, 220);
}

}  // namespace
}  // namespace ov::dialog
