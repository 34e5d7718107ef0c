#include "tests/soak/main_paths.h"

#include <shlobj.h>
#include <wrl/client.h>

#include <cstring>
#include <string>

#include "module/state/class_ids.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/checks/fake_dialog_library.h"

namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;

int WINAPI say_yes(HWND, LPCWSTR, LPCWSTR, UINT) {
    return IDOK;
}

outcome held(data_object& selection) {
    return selection.references() == 1 && selection.lock_count() == 0 ? "" : " held";
}

// What the shell asks of a folder and its first protected location.
outcome use(IShellFolder2& folder) {
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

}  // namespace

main_paths::main_paths() : boxes_(module_.handle(), "user32.dll", "MessageBoxW", &say_yes) {
    reply(
        service_call::get_restore_points,
        R"({"data":{"restorePoints":[{"createdOn":133500000000000000,"sequenceNumber":7}]},"statusCode":0})");
    reply(service_call::get_last_timestamp,
          R"({"data":{"lastTimestamp":133500000000000000},"statusCode":-2})");
}

outcome main_paths::right_click_on_a_folder() {
    reply_folder_status(true);
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto selection = select_paths({folder_.path()});
    ComPtr<IContextMenu> menu;
    if (FAILED(module_.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)))) {
        return "none";
    }
    outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
    seen += in_hex(queried_menu(menu.Get(), CMF_NORMAL).result);
    for (const UINT_PTR command : {1, 2, 3}) {
        seen += in_hex(invoke(menu.Get(), command));
    }
    return seen + held(*selection.Get());
}

outcome main_paths::dialog_of_a_tracked_file() {
    reply_with_file(service_call::get_file_chronels, "[]");
    const auto selection = select_paths({file_});
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
    outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
    seen += in_hex(queried_menu(menu.Get(), CMF_NORMAL).result);
    seen += in_hex(invoke(menu.Get(), 0));
    return seen + held(*selection.Get());
}

outcome main_paths::restore() {
    reply_with_file(service_call::get_restore_folders, R"({"restoreFolders":["C:\\a"]})");
    const auto selection = select_items({folder_.path()});
    ComPtr<IContextMenu> menu;
    if (FAILED(module_.create(class_ids::one_click_restore, IID_PPV_ARGS(&menu)))) {
        return "none";
    }
    outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
    seen += in_hex(invoke(menu.Get(), 0));
    return seen + (prompt_.references() == 0 ? "" : " held");
}

outcome main_paths::addons() {
    const auto selection = select_items({folder_.path()});
    ComPtr<IContextMenu> menu;
    if (FAILED(module_.create(class_ids::addons, IID_PPV_ARGS(&menu)))) {
        return "none";
    }
    const outcome seen = in_hex(initialize(menu.Get(), selection.Get()));
    return seen + in_hex(invoke(menu.Get(), 0));
}

outcome main_paths::folder() {
    reply_with_file(service_call::get_protected_folders,
                    R"({"hardDrive":{"folders":["C:\\windows"]},"mgmtCustom":[],"oneDrive":[],)"
                    R"("google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})");
    service_.set_generation(++generation_);
    ComPtr<IShellFolder2> folder;
    if (FAILED(module_.create(class_ids::namespace_folder, IID_PPV_ARGS(&folder)))) {
        return "none";
    }
    return use(*folder.Get());
}

}  // namespace ov::test
