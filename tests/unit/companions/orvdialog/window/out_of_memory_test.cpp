// The library in a host that has run out of memory, and what its loads leave behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "testkit/process/before_attach.h"
#include "testkit/memory/memory_shortage.h"
#include "testkit/checks/message_box_script.h"
#include "testkit/process/process_costs.h"
#include "testkit/imports/import_patch.h"
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

TEST(DialogLibraryOutOfMemory, dialog_isRefused) {
    expect_refused(dialog_library());
}

TEST(DialogLibraryOutOfMemory, loadedWithoutMemory_refusesLaterToo) {
    std::optional<test::memory_shortage> shortage;
    const test::before_attach starve(L"orvdialog.dll", [&](HMODULE module) { shortage.emplace(module); });
    const dialog_library library;
    ASSERT_TRUE(shortage);
    shortage.reset();
    expect_refused(library);
}

/// Lets so many allocations of a DLL pass and no more, for the length of a scope.
class last_allocations {
  public:
    last_allocations(HMODULE module, int allowed)
        : patch_(module, "msvcrt.dll;ucrtbase.dll", "malloc", allocate) {
        left = allowed;
        real = patch_.original();
    }

    static inline int left = 0;

  private:
    static void* allocate(std::size_t bytes) { return left-- > 0 ? real(bytes) : nullptr; }

    static inline void* (*real)(std::size_t) = nullptr;
    test::import_patch<void*(std::size_t)> patch_;
};

/// Opens a dialog with ever more memory, until there is enough: the host lives, and a message says why not.
void expect_refused_wherever_memory_ends(std::uint32_t (*open)(const dialog_library&)) {
    constexpr int step = 3;
    const closing_hook hook;
    const dialog_library library;
    int refused = 0;
    for (int allowed = 0; closing_hook::closed == 0 || last_allocations::left < 0; allowed += step) {
        ASSERT_LT(allowed, 5000);
        closing_hook::closed = 0;
        test::message_box_script boxes(loaded_library(), {IDOK});
        const last_allocations shortage(loaded_library(), allowed);
        EXPECT_EQ(open(library), 0U);
        refused += static_cast<int>(boxes.shown().size());
    }
    EXPECT_GT(refused, 3) << "it was short of memory at several places";
}

TEST(DialogLibraryOutOfMemory, protectionShortOfMemoryAnywhere_isRefused) {
    expect_refused_wherever_memory_ends(open_protection);
}

TEST(DialogLibraryOutOfMemory, versionsShortOfMemoryAnywhere_areRefused) {
    expect_refused_wherever_memory_ends(open_versions);
}

TEST(DialogLibraryOutOfMemory, manyLoads_costTheHostNothing) {
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
