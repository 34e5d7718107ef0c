#include <gmock/gmock.h>

#include <cstddef>

#include "module/state/class_ids.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/checks/fake_dialog_library.h"
#include "testkit/checks/handle_ledger.h"
#include "testkit/checks/message_box_script.h"
#include "testkit/memory/failing_allocations.h"
#include "tests/module/menus/entry_menus/consent.h"
#include "tests/module/menus/entry_menus/entry_fixture.h"
#include "tests/module/menus/file_menu/tracked_file_fixture.h"

namespace ov::test {
namespace {

using testing::IsEmpty;

class Leaks : public tracked_file_fixture {
  protected:
    Leaks() {
        reply_folder_status(true);
        service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
        // The port to the driver stays open for the life of the module: not a leak.
        (void)menu_on(folder_.path());
    }
};

TEST_F(Leaks, folder_menu_gives_every_handle_back) {
    const handle_ledger ledger(module_.handle());
    HMENU submenu = nullptr;
    for (int round = 0; round < 3; ++round) {
        const auto menu = menu_on(folder_.path());
        const queried_menu queried(menu.Get(), CMF_NORMAL);
        ASSERT_EQ(queried.result, 5);
        submenu = queried.added[0].submenu;
        EXPECT_EQ(invoke(menu.Get(), 2), S_OK);
    }
    EXPECT_FALSE(IsMenu(submenu)) << "the submenu goes with the host's menu";
    // The host destroys the submenus, so they are not in the module's own books of things given back.
    EXPECT_THAT(ledger.outstanding(), testing::Each("CreateMenu"));
    EXPECT_EQ(ledger.made_by("LoadImageW"), 3);
    EXPECT_EQ(ledger.made_by("GetIconInfo"), 6);
    EXPECT_EQ(ledger.made_by("CreateDIBSection"), 3);
    EXPECT_EQ(ledger.made_by("CreateCompatibleDC"), 3);
    EXPECT_EQ(ledger.made_by("GetDC"), 3);
}

TEST_F(Leaks, file_menu_gives_every_handle_back) {
    reply_with_file(service_call::get_file_chronels, "[]");
    fake_dialog_library dialogs(module_.handle());
    const handle_ledger ledger(module_.handle());
    {
        const auto menu = file_menu();
        EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).result, 1);
        EXPECT_EQ(invoke(menu.Get(), 0), E_UNEXPECTED);
    }
    EXPECT_THAT(ledger.outstanding(), IsEmpty());
    EXPECT_GE(ledger.made_by("CreateFileW"), 2) << "the file itself, and the driver's list";
    EXPECT_EQ(ledger.made_by("LoadLibraryExW"), 1);
}

// Runs `scene` with each of its allocations failing, of which there are `at_least` so many.
template <class Scene>
void with_each_allocation_failing(HMODULE module, int at_least, Scene scene,
                                  failing_allocations::mode how = failing_allocations::mode::once) {
    EXPECT_GE(fail_each_allocation(module, how, scene), at_least)
        << "the scene does not allocate what it should";
}

class NoMemory : public tracked_file_fixture {
  protected:
    NoMemory() { reply_folder_status(true); }
};

TEST_F(NoMemory, new_menus_are_made_whole_or_not_at_all) {
    struct made_class {
        CLSID rclsid;
        IID riid;
        int allocations;
    };
    for (const auto& row : {made_class{class_ids::shell_extension, IID_IContextMenu, 6},
                            made_class{class_ids::shell_extension, IID_IShellPropSheetExt, 2},
                            made_class{class_ids::one_click_restore, IID_IContextMenu, 2},
                            made_class{class_ids::addons, IID_IContextMenu, 2}}) {
        with_each_allocation_failing(module_.handle(), row.allocations, [&](auto&) {
            void* made = nullptr;
            const HRESULT result = module_.create(row.rclsid, row.riid, &made);
            EXPECT_EQ(result, made != nullptr ? S_OK : E_OUTOFMEMORY);
            if (made != nullptr) {
                static_cast<IUnknown*>(made)->Release();
            }
            EXPECT_EQ(module_.can_unload_now(), S_OK);
        });
    }
}

TEST_F(NoMemory, file_menu_is_whole_or_empty) {
    const auto selection = select_paths({file_});
    with_each_allocation_failing(module_.handle(), 2, [&](auto& memory) {
        memory.pause();
        const auto menu = make_menu(class_ids::shell_extension);
        memory.resume();
        EXPECT_EQ(initialize(menu.Get(), selection.Get()), S_OK);
        const HRESULT count = queried_menu(menu.Get(), CMF_NORMAL).result;
        EXPECT_EQ(count, memory.met() ? 0 : 1);
        EXPECT_EQ(selection->references(), 1U);
        EXPECT_EQ(selection->lock_count(), 0U);
    });
}

// The service call builds and reads JSON, whose library allocates even while it destroys a value.
class NoMemoryForJson : public NoMemory, public testing::WithParamInterface<failing_allocations::mode> {};

TEST_P(NoMemoryForJson, folder_menu_learns_what_it_can_and_the_host_lives) {
    const auto selection = select_paths({folder_.path()});
    with_each_allocation_failing(
        module_.handle(), 10,
        [&](auto& memory) {
            memory.pause();
            const auto menu = make_menu(class_ids::shell_extension);
            memory.resume();
            EXPECT_EQ(initialize(menu.Get(), selection.Get()), S_OK);
            memory.pause();
            // No selection, a folder that is taken for unprotected, or all that there is to know.
            EXPECT_THAT(queried_menu(menu.Get(), CMF_NORMAL).result, testing::AnyOf(0, 2, 3));
            EXPECT_EQ(selection->references(), 1U);
            EXPECT_EQ(selection->lock_count(), 0U);
        },
        GetParam());
}

TEST_P(NoMemoryForJson, unprotect_fails_or_succeeds_and_the_host_lives) {
    reply(service_call::unprotect_folder, R"({"data":{},"statusCode":0})");
    const auto menu = menu_on(folder_.path());
    with_each_allocation_failing(
        module_.handle(), 10,
        [&](auto&) {
            message_box_script boxes(module_.handle(), {IDOK});
            EXPECT_THAT(invoke(menu.Get(), 1), testing::AnyOf(S_OK, E_UNEXPECTED, E_OUTOFMEMORY));
        },
        GetParam());
}

INSTANTIATE_TEST_SUITE_P(OnceAndForGood, NoMemoryForJson,
                         testing::Values(failing_allocations::mode::once,
                                         failing_allocations::mode::from_then_on),
                         [](const auto& test) {
                             return test.param == failing_allocations::mode::once ? "once" : "forGood";
                         });

TEST_F(NoMemory, unprotect_is_asked_or_not) {
    const auto menu = menu_on(folder_.path());
    with_each_allocation_failing(module_.handle(), 2, [&](auto&) {
        message_box_script boxes(module_.handle(), {IDCANCEL});
        const HRESULT result = invoke(menu.Get(), 1);
        EXPECT_EQ(result, boxes.shown().empty() ? E_OUTOFMEMORY : S_OK);
    });
}

TEST_F(NoMemory, restore_ends_its_turn_wherever_memory_runs_out) {
    reply(
        service_call::get_restore_points,
        R"({"data":{"restorePoints":[{"createdOn":133500000000000000,"sequenceNumber":7}]},"statusCode":0})");
    consent prompt(module_.handle());
    const auto selection = select_items({folder_.path()});
    const auto menu = make_menu(class_ids::one_click_restore);
    ASSERT_EQ(initialize(menu.Get(), selection.Get()), S_OK);
    with_each_allocation_failing(module_.handle(), 4, [&](auto& memory) {
        prompt.while_asked = [&] { memory.pause(); };
        message_box_script boxes(module_.handle(), {IDOK, IDCANCEL});
        boxes.while_shown = [&](const auto&) { memory.resume(); };
        EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
        memory.pause();
        EXPECT_EQ(prompt.references(), 0U);
        const auto other = menu_on(folder_.path());
        EXPECT_EQ(queried_menu(other.Get(), CMF_NORMAL).result, 3) << "the turn is not over";
    });
}

}  // namespace
}  // namespace ov::test
