// The library's two exports, known by ordinal only. What comes in is checked here, before any dialog is made:
// the caller is another program's module, perhaps of another version.
#include <windows.h>
#include <commctrl.h>

#include <cstring>
#include <cwchar>

#include "companions/orvdialog/control_ids.h"
#include "companions/orvdialog/protect/protect_dialog.h"
#include "companions/orvdialog/request/caller_memory.h"
#include "companions/orvdialog/texts/dialog_texts.h"
#include "companions/orvdialog/texts/message_numbers.h"
#include "companions/orvdialog/versions/chronel_dialog.h"
#include "companions/orvdialog/window/library_instance.h"
#include "companions/orvdialog/window/message.h"
#include "ovufc/dialog/dialog_records.h"

namespace ov::dialog {

namespace {

namespace numbers = message_numbers;

/// The longest path that Windows knows.
constexpr std::size_t longest_path_chars = 32767;

/// A copy of the caller's record; false when it cannot be read or is not of the size that it must have.
template <class Record>
bool read_record(const Record* from, Record& copy) noexcept {
    if (readable_bytes(from, sizeof copy) != sizeof copy) {
        return false;
    }
    std::memcpy(&copy, from, sizeof copy);
    return copy.size_bytes == sizeof copy;
}

void refuse(const dialog_texts& texts, std::uint32_t number, UINT icon = MB_ICONERROR) noexcept {
    show_message(owner_window(), &texts, number, icon);
}

bool is_confirmed(modal_dialog& dialog, WORD template_id, const dialog_texts& texts) noexcept {
    const INT_PTR ended_with = dialog.show(template_id, owner_window());
    if (ended_with == -1) {
        refuse(texts, numbers::not_shown);
    }
    return ended_with == IDOK;
}

bool show_protect(ProtectDialogRequest* request, const dialog_texts& texts) {
    ProtectDialogRequest record;
    const bool usable = read_record(request, record) && is_writable(request, sizeof *request);
    const auto folder = usable ? read_wide_text(record.folder_path, longest_path_chars) : std::nullopt;
    if (!folder || folder->empty()) {
        refuse(texts, numbers::request_unreadable);
        return false;
    }
    protect_dialog dialog(texts, *folder, (record.flags & protect_flag_show_unprotect) != 0);
    if (!is_confirmed(dialog, IDD_PROTECT, texts)) {
        return false;
    }
    const std::wstring& path = dialog.object_path();
    std::wmemcpy(request->object_path, path.c_str(), path.size() + 1);
    return true;
}

bool show_chronels(const ChronelDialogRequest* request, ChronelDialogResult* result,
                   const dialog_texts& texts) {
    ChronelDialogRequest record;
    const bool usable = read_record(request, record) && is_writable(result, sizeof *result);
    const auto file = usable ? read_wide_text(record.file_path, longest_path_chars) : std::nullopt;
    const auto text = file ? read_narrow_text(record.chronel_list, longest_list_bytes) : std::nullopt;
    if (!text) {
        refuse(texts, numbers::request_unreadable);
        return false;
    }
    auto list = chronel_list::read(*text);
    if (!list) {
        refuse(texts, numbers::list_unreadable);
        return false;
    }
    if (list->size() == 0) {
        refuse(texts, numbers::list_empty, MB_ICONINFORMATION);
        return false;
    }
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    chronel_dialog dialog(texts, *file, record.menu_icon, std::move(*list));
    if (!is_confirmed(dialog, IDD_CHRONELS, texts)) {
        return false;
    }
    dialog.fill(*result);
    return true;
}

/// One dialog at a time a thread: a second request, which the first one's messages can bring about, brings
/// the first to the front and is not confirmed. No exception reaches the caller; what is thrown here is a
/// lack of memory.
template <class Body>
std::uint32_t guarded(Body body) noexcept {
    if (const HWND shown = dialog_of_this_thread()) {
        SetForegroundWindow(GetLastActivePopup(shown));
        return 0;
    }
    try {
        const dialog_texts texts(library_folder() + L"orvres.dll");
        return body(texts) ? 1 : 0;
    } catch (...) {
        // Let go of before the message is up: it may have been made of a reserve that others need.
    }
    show_message(owner_window(), nullptr, numbers::not_shown, MB_ICONERROR);
    return 0;
}

}  // namespace

}  // namespace ov::dialog

extern "C" std::uint32_t WINAPI orv_show_protect_dialog(ov::dialog::ProtectDialogRequest* request) {
    return ov::dialog::guarded(
        [&](const ov::dialog::dialog_texts& texts) { return ov::dialog::show_protect(request, texts); });
}

extern "C" std::uint32_t WINAPI orv_show_chronel_dialog(ov::dialog::ChronelDialogRequest* request,
                                                        ov::dialog::ChronelDialogResult* result) {
    return ov::dialog::guarded([&](const ov::dialog::dialog_texts& texts) {
        return ov::dialog::show_chronels(request, result, texts);
    });
}
