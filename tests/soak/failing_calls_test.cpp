// Each call that the module makes of Windows fails in turn, on every main path: the path comes to one of the
// ends that are documented for it, nothing is left over, and the next time it works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <set>
#include <string>

#include "module/state/class_ids.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/checks/fake_dialog_library.h"
#include "testkit/checks/handle_ledger.h"
#include "testkit/imports/failing_calls.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/process_costs.h"
#include "tests/module/menus/entry_menus/consent.h"
#include "tests/module/menus/file_menu/tracked_file_fixture.h"
#include "tests/soak/effort.h"
#include "tests/soak/outcome.h"

namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;

// The user says yes to everything.
int WINAPI say_yes(HWND, LPCWSTR, LPCWSTR, UINT) {
    return IDOK;
}

class FailingCalls : public tracked_file_fixture {
  protected:
    // `whole` is what `path` comes to when nothing fails, `documented` what else it may come to.
    void expect_documented(const std::function<outcome()>& path, const outcome& whole,
                           const std::set<outcome>& documented) {
        fail_each(path, whole, documented);
        const process_costs before;
        const unsigned rounds = effort(0, 4);
        for (unsigned round = 0; round < rounds; ++round) {
            fail_each(path, whole, documented);
        }
        // A block for each round would be one that some failure leaves over.
        EXPECT_THAT(process_costs().grown_since(before, 3), testing::IsEmpty());
    }

    void fail_each(const std::function<outcome()>& path, const outcome& whole,
                   const std::set<outcome>& documented) {
        EXPECT_EQ(path(), whole);  // the port to the driver stays open from now on
        const handle_ledger ledger(module_.handle());
        const int failures = fail_each_call(
            module_.handle(), most_calls_of_one_function(),
            [&](const failing_call& call, const std::string& what) {
                const outcome seen = path();
                if (call.met()) {
                    EXPECT_TRUE(seen == whole || documented.contains(seen)) << what << " fails: " << seen;
                    EXPECT_EQ(path(), whole) << "once " << what << " has failed";
                } else {
                    EXPECT_EQ(seen, whole) << what << " was not made";
                }
                service_.forget_requests();  // it keeps each text
            });
        EXPECT_GE(failures, 5) << "the path does not call what it should";
        // The host's menu takes its submenus with it.
        EXPECT_THAT(ledger.outstanding(), testing::Each("CreateMenu"));
    }

    import_patch<decltype(MessageBoxW)> boxes_{module_.handle(), "user32.dll", "MessageBoxW", &say_yes};
};

TEST_F(FailingCalls, right_click_on_a_folder) {
    reply_folder_status(true);
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto selection = select_paths({folder_.path()});
    const auto path = [&]() -> outcome {
        ComPtr<IContextMenu> menu;
        if (FAILED(module_.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)))) {
            return "none";
        }
        outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
        const HMENU host = CreatePopupMenu();
        seen += in_hex(menu->QueryContextMenu(host, 0, 1, 0x7FFF, CMF_NORMAL));
        DestroyMenu(host);
        for (const UINT_PTR command : {1, 2, 3}) {
            seen += in_hex(invoke(menu.Get(), command));
        }
        return seen + (selection->references() == 1 && selection->lock_count() == 0 ? "" : " held");
    };
    // No menu to put items into; no selection that can be read.
    expect_documented(path, " 0 5 0 0 0", {" 0 80070032 0 0 0", " 0 0 80070057 80070057 80070057"});
}

TEST_F(FailingCalls, dialog_of_a_tracked_file) {
    const auto path = [&]() -> outcome {
        reply_with_file(service_call::get_file_chronels, "[]");
        ComPtr<IContextMenu> menu;
        if (FAILED(module_.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)))) {
            return "none";
        }
        fake_dialog_library dialogs(module_.handle());
        dialogs.chronels = [](const auto&, dialog::ChronelDialogResult& result) -> std::uint32_t {
            result.size_bytes = sizeof result;
            result.action = 2;
            std::strcpy(result.chronel_identifier, R"({"cloneFileName":"clone","fileName":"used","type":3})");
            return 1;
        };
        const auto selection = select_paths({file_});
        outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
        const HMENU host = CreatePopupMenu();
        seen += in_hex(menu->QueryContextMenu(host, 0, 1, 0x7FFF, CMF_NORMAL));
        DestroyMenu(host);
        return seen + in_hex(invoke(menu.Get(), 0)) + (selection->references() == 1 ? "" : " held");
    };
    // Not known as tracked; a list of chronels that cannot be read.
    expect_documented(path, " 0 1 0", {" 0 0 80070057", " 0 1 8000ffff"});
}

TEST_F(FailingCalls, restore) {
    reply(
        service_call::get_restore_points,
        R"({"data":{"restorePoints":[{"createdOn":133500000000000000,"sequenceNumber":7}]},"statusCode":0})");
    const consent prompt(module_.handle());
    const auto path = [&]() -> outcome {
        reply_with_file(service_call::get_restore_folders, R"({"restoreFolders":["C:\\a"]})");
        ComPtr<IContextMenu> menu;
        if (FAILED(module_.create(class_ids::one_click_restore, IID_PPV_ARGS(&menu)))) {
            return "none";
        }
        const auto selection = select_items({folder_.path()});
        outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
        seen += in_hex(invoke(menu.Get(), 0));
        return seen + (prompt.references() == 0 ? "" : " held");
    };
    expect_documented(path, " 0 0", {});
}

TEST_F(FailingCalls, addons) {
    reply(service_call::get_last_timestamp,
          R"({"data":{"lastTimestamp":133500000000000000},"statusCode":-2})");
    const auto path = [&]() -> outcome {
        ComPtr<IContextMenu> menu;
        if (FAILED(module_.create(class_ids::addons, IID_PPV_ARGS(&menu)))) {
            return "none";
        }
        const auto selection = select_items({folder_.path()});
        outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
        return seen + in_hex(invoke(menu.Get(), 0));
    };
    expect_documented(path, " 0 0", {});
}

// What the shell asks of a folder and its first protected location.
outcome use_folder(IShellFolder2& folder) {
    ComPtr<IEnumIDList> list;
    outcome seen = in_hex(folder.EnumObjects(nullptr, SHCONTF_FOLDERS, &list));
    int items = 0;
    PITEMID_CHILD entry = nullptr;
    for (ULONG fetched = 0; list != nullptr && list->Next(1, &entry, &fetched) == S_OK; ++items) {
        CoTaskMemFree(entry);
    }
    seen += ' ' + std::to_string(items);
    std::wstring name = L"C:\\windows";
    PIDLIST_RELATIVE parsed = nullptr;
    seen += in_hex(folder.ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &parsed, nullptr));
    if (parsed == nullptr) {
        return seen;
    }
    const auto* child = reinterpret_cast<PCUITEMID_CHILD>(parsed);
    for (const SHGDNF kind : {SHGDNF{SHGDN_NORMAL}, SHGDNF{SHGDN_FORPARSING}}) {
        STRRET shown{};
        seen += in_hex(folder.GetDisplayNameOf(child, kind, &shown));
        CoTaskMemFree(shown.pOleStr);
    }
    SHELLDETAILS details{};
    seen += in_hex(folder.GetDetailsOf(child, 1, &details));
    CoTaskMemFree(details.str.pOleStr);
    ComPtr<IShellFolder> bound;
    seen += in_hex(folder.BindToObject(parsed, nullptr, IID_PPV_ARGS(&bound)));
    CoTaskMemFree(parsed);
    return seen;
}

TEST_F(FailingCalls, folder) {
    std::uint32_t generation = 0;
    const auto path = [&]() -> outcome {
        reply_with_file(service_call::get_protected_folders,
                        R"({"hardDrive":{"folders":["C:\\windows"]},"mgmtCustom":[],"oneDrive":[],)"
                        R"("google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})");
        service_.set_generation(++generation);
        ComPtr<IShellFolder2> folder;
        if (FAILED(module_.create(class_ids::namespace_folder, IID_PPV_ARGS(&folder)))) {
            return "none";
        }
        return use_folder(*folder.Get());
    };
    expect_documented(path, " 0 2 0 0 0 0 0",
                      {
                          " 0 0 0 0 0 0 0",         // no memory for the first entry,
                          " 0 1 0 0 0 0 0",         // the second,
                          " 0 2 8007000e",          // the one that is asked for by name,
                          " 0 2 0 8007000e 0 0 0",  // its display name,
                          " 0 2 0 0 8007000e 0 0",  // its path,
                          " 0 2 0 0 0 8007000e 0",  // its type;
                          " 0 8 80070057",          // no document, so all standard folders,
                          " 0 2 80070057",          // no location of that name,
                          " 0 2 0 0 0 0 8007000e",  // no place where it could be,
                          " 0 2 0 0 0 0 80004005",  // no desktop
                      });
}

}  // namespace
}  // namespace ov::test
