// The library in a host that has run out of memory, and what its loads leave behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "testkit/process/before_attach.h"
#include "testkit/memory/failing_allocations.h"
#include "testkit/memory/memory_shortage.h"
#include "testkit/checks/message_box_script.h"
#include "testkit/process/process_costs.h"
#include "tests/unit/companions/orvdialog/window/closed_dialogs.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {
namespace {

HMODULE loaded_library() {
    return GetModuleHandleW(L"orvdialog.dll");
}

/// Asks for a dialog without memory: a message comes in its place.
void expect_refused(const dialog_library& library) {
    ProtectDialogRequest request{};
    request.size_bytes = sizeof request;
    request.folder_path = L"C:\\windows";
    test::message_box_script boxes(loaded_library(), {IDOK});
    {
        const test::memory_shortage shortage(loaded_library());
        EXPECT_EQ(library.protect(&request), 0U);
    }
    ASSERT_EQ(boxes.shown().size(), 1U);
    EXPECT_THAT(boxes.shown()[0].text, testing::HasSubstr(L"Close some programs"));
}

TEST(DialogLibraryOutOfMemory, dialog_is_refused) {
    expect_refused(dialog_library());
}

TEST(DialogLibraryOutOfMemory, loaded_without_memory_refuses_later_too) {
    std::optional<test::memory_shortage> shortage;
    const test::before_attach starve(L"orvdialog.dll", [&](HMODULE module) { shortage.emplace(module); });
    const dialog_library library;
    ASSERT_TRUE(shortage);
    shortage.reset();
    expect_refused(library);
}

/// Opens a dialog again and again, each time with memory for one allocation more: a message says why it is
/// not shown, and the host lives.
void expect_refused_wherever_memory_ends(std::uint32_t (*open)(const dialog_library&)) {
    const closing_hook hook;
    const dialog_library library;
    int told = 0;
    const int failures = test::fail_each_allocation(
        loaded_library(), test::failing_allocations::mode::from_then_on, [&](auto& memory) {
            test::message_box_script boxes(loaded_library(), {IDOK});
            EXPECT_EQ(open(library), 0U);
            memory.pause();
            told += static_cast<int>(boxes.shown().size());
        });
    EXPECT_GT(failures, 20);
    EXPECT_EQ(told, failures) << "each time it was said";
}

TEST(DialogLibraryOutOfMemory, protection_short_of_memory_anywhere_is_refused) {
    expect_refused_wherever_memory_ends(open_protection);
}

TEST(DialogLibraryOutOfMemory, versions_short_of_memory_anywhere_are_refused) {
    expect_refused_wherever_memory_ends(open_versions);
}

TEST(DialogLibraryOutOfMemory, many_loads_cost_the_host_nothing) {
    const auto load_a_hundred_times = [] {
        for (int load = 0; load < 100; ++load) {
            expect_refused(dialog_library());
        }
    };
    load_a_hundred_times();  // what the system takes for itself, once
    const test::process_costs before;
    load_a_hundred_times();
    EXPECT_THAT(test::process_costs().grown_since(before, 20), testing::IsEmpty());
}

}  // namespace
}  // namespace ov::dialog
