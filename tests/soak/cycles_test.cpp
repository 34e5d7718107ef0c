// Each path again and again, through the module as it is shipped: nothing may grow.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <functional>

#include "module/state/class_ids.h"
#include "testkit/files/temp_folder.h"
#include "testkit/process/process_costs.h"
#include "testkit/process/shipped_module.h"
#include "testkit/service/scripted_service.h"
#include "testkit/shell/data_object.h"
#include "tests/soak/effort.h"

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

class Cycles : public testing::Test {
  protected:
    Cycles() { (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~Cycles() override { CoUninitialize(); }

    scripted_service service_{
        [](const auto&) { return R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"full"}})"; }};
    temp_folder folder_;
    ComPtr<data_object> selection_ = select_paths({folder_.path()});
};

void click(const shipped_module& module, IDataObject* selection) {
    ComPtr<IContextMenu> menu;
    ComPtr<IShellExtInit> init;
    ASSERT_EQ(module.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)), S_OK);
    ASSERT_EQ(menu.As(&init), S_OK);
    ASSERT_EQ(init->Initialize(nullptr, selection, nullptr), S_OK);
    const HMENU host = CreatePopupMenu();
    EXPECT_GT(menu->QueryContextMenu(host, 0, 1, 0x7FFF, CMF_NORMAL), 0);
    DestroyMenu(host);
}

void open_folder(const shipped_module& module) {
    ComPtr<IShellFolder2> folder;
    ComPtr<IEnumIDList> list;
    ASSERT_EQ(module.create(class_ids::namespace_folder, IID_PPV_ARGS(&folder)), S_OK);
    ASSERT_EQ(folder->EnumObjects(nullptr, SHCONTF_FOLDERS, &list), S_OK);
    PITEMID_CHILD entry = nullptr;
    for (ULONG fetched = 0; list->Next(1, &entry, &fetched) == S_OK;) {
        CoTaskMemFree(entry);
    }
}

TEST_F(Cycles, right_clicks_cost_nothing_in_the_end) {
    const shipped_module module;
    expect_nothing_grows(effort(100, 10'000), [&] {
        click(module, selection_.Get());
        service_.forget_requests();  // it keeps each text
    });
}

TEST_F(Cycles, folders_opened_and_closed_cost_nothing_in_the_end) {
    const shipped_module module;
    expect_nothing_grows(effort(50, 10'000), [&] { open_folder(module); });
}

TEST_F(Cycles, loads_with_a_failure_inside_cost_nothing_in_the_end) {
    service_.set_answer([](const auto&) { return "no JSON"; });
    expect_nothing_grows(effort(30, 5'000), [&] {
        const shipped_module module;
        click(module, selection_.Get());
        service_.forget_requests();
    });
}

}  // namespace
}  // namespace ov::test
