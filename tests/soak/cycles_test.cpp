// Each path again and again, through the module as it is shipped: nothing may grow.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <functional>

#include "module/state/class_ids.h"
#include "testkit/files/temp_folder.h"
#include "testkit/imports/absent_driver.h"
#include "testkit/process/process_costs.h"
#include "testkit/process/shipped_module.h"
#include "testkit/service/scripted_service.h"
#include "testkit/shell/data_object.h"
#include "tests/soak/effort.h"
#include "tests/soak/main_paths.h"

namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;

// What a cycle may keep over all of its rounds: a page or block that some library of the system grew by.
constexpr std::size_t tolerance = 15;

void expect_nothing_grows(unsigned cycles, const std::function<void()>& cycle) {
    // What is made once is made now, by the first count too.
    (void)process_costs();
    for (int i = 0; i < 20; ++i) {
        cycle();
    }
    const process_costs before;
    for (unsigned i = 0; i < cycles; ++i) {
        cycle();
    }
    EXPECT_THAT(process_costs().grown_since(before, tolerance), testing::IsEmpty());
}

class Cycles : public main_paths {
  protected:
    void expect_free(const std::function<outcome()>& path, const outcome& whole) {
        expect_nothing_grows(effort(50, 10'000), [&] {
            ASSERT_EQ(path(), whole);
            service_.forget_requests();  // it keeps each text
        });
        EXPECT_EQ(module_.can_unload_now(), S_OK);
    }
};

TEST_F(Cycles, right_clicks_cost_nothing_in_the_end) {
    expect_free([&] { return right_click_on_a_folder(); }, " 0 5 0 0 0");
}

TEST_F(Cycles, dialogs_cost_nothing_in_the_end) {
    expect_free([&] { return dialog_of_a_tracked_file(); }, " 0 1 0");
}

TEST_F(Cycles, restores_cost_nothing_in_the_end) {
    expect_free([&] { return restore(); }, " 0 0");
}

TEST_F(Cycles, addons_cost_nothing_in_the_end) {
    expect_free([&] { return addons(); }, " 0 0");
}

TEST_F(Cycles, folders_opened_and_closed_cost_nothing_in_the_end) {
    expect_free([&] { return folder(); }, " 0 2 0 0 0 0 0");
}

TEST_F(Cycles, right_clicks_without_a_driver_cost_nothing_in_the_end) {
    const absent_driver no_driver(module_.handle());
    expect_free([&] { return right_click_on_a_folder(); }, " 0 2 8000ffff 0 0");
}

TEST(LoadCycles, loads_with_a_failure_inside_cost_nothing_in_the_end) {
    scripted_service service([](const auto&) { return "no JSON"; });
    const temp_folder folder;
    const auto selection = select_paths({folder.path()});
    expect_nothing_grows(effort(30, 5'000), [&] {
        const shipped_module module;
        ComPtr<IContextMenu> menu;
        ASSERT_EQ(module.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)), S_OK);
        ASSERT_EQ(initialize(menu.Get(), selection.Get()), S_OK);
        EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).result, 2);
        service.forget_requests();
    });
}

}  // namespace
}  // namespace ov::test
