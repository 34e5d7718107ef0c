// The library's two exports, known by ordinal only. What comes in is checked here, before any dialog is made:
// the caller is another program's module, perhaps of another version.
#include <windows.h>
#include <commctrl.h>

#include <cstring>
#include <cwchar>

#include "companions/orvdialog/caller_memory.h"
#include "companions/orvdialog/chronel_dialog.h"
#include "companions/orvdialog/control_ids.h"
#include "companions/orvdialog/protect_dialog.h"
#include "ovufc/dialog/dialog_records.h"

namespace ov::dialog {

namespace {

/// The longest path that Windows knows.
constexpr std::size_t longest_path_chars = 32767;

constexpr const wchar_t* bad_request =
    L"This window cannot be shown, because the request for it cannot be read.\n\n"
    L"Parts of Orvane Vaultkeep may be of different versions. Installing it again puts that right.";
constexpr const wchar_t* not_shown = L"This window cannot be shown. Close some programs and try again.";
constexpr const wchar_t* bad_list =
    L"The list of the earlier versions of this file cannot be read.\n\n"
    L"Try again. If that does not help, contact your administrator.";
constexpr const wchar_t* empty_list = L"No earlier versions of this file are kept yet.";

/// A copy of the caller's record; false when it cannot be read or is not of the size that it must have.
template <class Record>
bool read_record(const Record* from, Record& copy) noexcept {
    if (readable_bytes(from, sizeof copy) != sizeof copy) {
        return false;
    }
    std::memcpy(&copy, from, sizeof copy);
    return copy.size_bytes == sizeof copy;
}

bool is_confirmed(modal_dialog& dialog, WORD template_id) noexcept {
    const INT_PTR ended_with = dialog.show(template_id);
    if (ended_with == -1) {
        show_message(nullptr, not_shown, MB_ICONERROR);
    }
    return ended_with == IDOK;
}

bool show_protect(ProtectDialogRequest* request) {
    ProtectDialogRequest record;
    const bool usable = read_record(request, record) && is_writable(request, sizeof *request);
    const auto folder = usable ? read_wide_text(record.folder_path, longest_path_chars) : std::nullopt;
    if (!folder || folder->empty()) {
        show_message(nullptr, bad_request, MB_ICONERROR);
        return false;
    }
    protect_dialog dialog(*folder, (record.flags & protect_flag_show_unprotect) != 0);
    if (!is_confirmed(dialog, IDD_PROTECT)) {
        return false;
    }
    const std::wstring& path = dialog.object_path();
    std::wmemcpy(request->object_path, path.c_str(), path.size() + 1);
    return true;
}

bool show_chronels(const ChronelDialogRequest* request, ChronelDialogResult* result) {
    ChronelDialogRequest record;
    const bool usable = read_record(request, record) && is_writable(result, sizeof *result);
    const auto file = usable ? read_wide_text(record.file_path, longest_path_chars) : std::nullopt;
    const auto list = file ? read_narrow_text(record.chronel_list, longest_list_bytes) : std::nullopt;
    if (!list) {
        show_message(nullptr, bad_request, MB_ICONERROR);
        return false;
    }
    auto chronels = read_chronel_list(*list);
    if (!chronels || chronels->empty()) {
        show_message(nullptr, chronels ? empty_list : bad_list, chronels ? MB_ICONINFORMATION : MB_ICONERROR);
        return false;
    }
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    chronel_dialog dialog(*file, record.menu_icon, std::move(*chronels));
    if (!is_confirmed(dialog, IDD_CHRONELS)) {
        return false;
    }
    dialog.fill(*result);
    return true;
}

/// No exception reaches the caller; what is thrown here is a lack of memory.
template <class Body>
std::uint32_t guarded(Body body) noexcept {
    try {
        return body() ? 1 : 0;
    } catch (...) {
        // Let go of before the message is up: it may have been made of a reserve that others need.
    }
    show_message(nullptr, not_shown, MB_ICONERROR);
    return 0;
}

}  // namespace

}  // namespace ov::dialog

extern "C" std::uint32_t WINAPI orv_show_protect_dialog(ov::dialog::ProtectDialogRequest* request) {
    return ov::dialog::guarded([&] { return ov::dialog::show_protect(request); });
}

extern "C" std::uint32_t WINAPI orv_show_chronel_dialog(ov::dialog::ChronelDialogRequest* request,
                                                        ov::dialog::ChronelDialogResult* result) {
    return ov::dialog::guarded([&] { return ov::dialog::show_chronels(request, result); });
}
