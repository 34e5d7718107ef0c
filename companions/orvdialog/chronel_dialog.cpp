#include "companions/orvdialog/chronel_dialog.h"

#include <commctrl.h>

#include <cstring>
#include <cwchar>

#include "companions/orvdialog/chronel_columns.h"
#include "companions/orvdialog/control_ids.h"

namespace ov::dialog {

namespace {

bool fits(const chronel& item) {
    return item.identifier.size() < sizeof ChronelDialogResult{}.chronel_identifier &&
           item.file_name.size() < std::size(ChronelDialogResult{}.file_name) &&
           item.file_name.find(L'\0') == std::wstring::npos;
}

}  // namespace

void chronel_dialog::fill(ChronelDialogResult& result) const noexcept {
    result.action = action_;
    std::memcpy(result.chronel_identifier, chosen_->identifier.c_str(), chosen_->identifier.size() + 1);
    std::wmemcpy(result.file_name, chosen_->file_name.c_str(), chosen_->file_name.size() + 1);
    result.size_bytes = sizeof result;
}

bool chronel_dialog::on_open() {
    SetWindowTextW(control(IDC_CHRONELS_FILE), file_path_.c_str());
    // A copy of the size that there is room for: a caller's icon may be of any, or no icon at all.
    const int side = GetSystemMetrics(SM_CXMENUSIZE);
    shown_icon_.reset(static_cast<HICON>(CopyImage(icon_, IMAGE_ICON, side, side, 0)));
    SendMessageW(control(IDC_CHRONELS_ICON), STM_SETICON, reinterpret_cast<WPARAM>(shown_icon_.get()), 0);
    const HWND list = control(IDC_CHRONELS_LIST);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
    add_chronel_columns(list);
    ListView_SetItemCountEx(list, static_cast<int>(chronels_.size()), 0);
    ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    enable_buttons();
    SetFocus(list);
    return false;
}

void chronel_dialog::on_command(WORD control_id, WORD code) {
    if (code != BN_CLICKED) {
        return;
    }
    switch (control_id) {
        case IDCANCEL:
            return end(IDCANCEL);
        case IDC_CHRONELS_OPEN:
            return choose(chronel_action_open);
        case IDC_CHRONELS_RESTORE:
            return choose(chronel_action_restore);
        default:
            return;
    }
}

LRESULT chronel_dialog::on_notify(NMHDR& notification) {
    if (notification.idFrom != IDC_CHRONELS_LIST) {
        return 0;
    }
    switch (notification.code) {
        case LVN_GETDISPINFOW: {
            LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(notification).item;
            if ((item.mask & LVIF_TEXT) != 0 && item.cchTextMax > 0 && item.iItem >= 0 &&
                static_cast<std::size_t>(item.iItem) < chronels_.size()) {
                lstrcpynW(item.pszText, chronel_cell(chronels_[item.iItem], item.iSubItem).c_str(),
                          item.cchTextMax);
            }
            break;
        }
        case LVN_ITEMCHANGED:
        case LVN_ODSTATECHANGED:
            enable_buttons();
            break;
        case NM_DBLCLK:
            choose(chronel_action_open);
            break;
        default:
            break;
    }
    return 0;
}

int chronel_dialog::selected_row() const noexcept {
    return ListView_GetNextItem(control(IDC_CHRONELS_LIST), -1, LVNI_SELECTED);
}

void chronel_dialog::enable_buttons() noexcept {
    const BOOL enabled = selected_row() >= 0 ? TRUE : FALSE;
    EnableWindow(control(IDC_CHRONELS_OPEN), enabled);
    EnableWindow(control(IDC_CHRONELS_RESTORE), enabled);
}

void chronel_dialog::choose(std::uint32_t action) {
    const int row = selected_row();
    if (row < 0 || static_cast<std::size_t>(row) >= chronels_.size()) {
        return;
    }
    const chronel& item = chronels_[row];
    if (!fits(item)) {
        show_message(
            window(),
            L"This version cannot be opened or restored: its record is not usable. Choose another one.",
            MB_ICONWARNING);
        return;
    }
    chosen_ = &item;
    action_ = action;
    end(IDOK);
}

}  // namespace ov::dialog
