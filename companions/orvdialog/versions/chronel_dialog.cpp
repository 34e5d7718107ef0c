#include "companions/orvdialog/versions/chronel_dialog.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <iterator>

#include "companions/orvdialog/control_ids.h"
#include "companions/orvdialog/layout/display.h"
#include "companions/orvdialog/layout/stack.h"
#include "companions/orvdialog/texts/message_numbers.h"
#include "companions/orvdialog/versions/remembered_view.h"
#include "companions/orvdialog/versions/version_menu.h"
#include "companions/orvdialog/window/message.h"

namespace ov::dialog {

namespace {

namespace numbers = message_numbers;

constexpr std::array controls{
    control_text{IDC_CHRONELS_FILE_LABEL, numbers::file_label},
    control_text{IDC_CHRONELS_LABEL, numbers::versions_label},
    control_text{IDC_CHRONELS_LIST, 0},
    control_text{IDC_CHRONELS_OPEN, numbers::open},
    control_text{IDC_CHRONELS_RESTORE, numbers::restore},
    control_text{IDCANCEL, numbers::cancel},
};

/// No screen is so large.
constexpr LONG largest_client = 20'000;

bool fits(const chronel& item) {
    return !item.identifier.empty() &&
           item.identifier.size() < sizeof ChronelDialogResult{}.chronel_identifier &&
           item.file_name.size() < std::size(ChronelDialogResult{}.file_name) &&
           item.file_name.find(L'\0') == std::wstring::npos;
}

}  // namespace

chronel_dialog::chronel_dialog(const dialog_texts& texts, std::wstring file_path, HICON icon,
                               chronel_list chronels)
    : modal_dialog(texts, numbers::versions_title, controls),
      file_path_(std::move(file_path)),
      icon_(icon),
      chronels_(std::move(chronels)),
      rows_(chronels_, texts) {}

void chronel_dialog::fill(ChronelDialogResult& result) const noexcept {
    result.action = action_;
    std::memcpy(result.chronel_identifier, chosen_.identifier.c_str(), chosen_.identifier.size() + 1);
    std::wmemcpy(result.file_name, chosen_.file_name.c_str(), chosen_.file_name.size() + 1);
    result.size_bytes = sizeof result;
}

void chronel_dialog::on_open() {
    show_path(IDC_CHRONELS_FILE, file_path_);
    // Not seen, but read out where the label before the list is not taken for its name.
    SetWindowTextW(control(IDC_CHRONELS_LIST),
                   without_mnemonic(texts().text(numbers::versions_label)).c_str());
    rows_.fill(control(IDC_CHRONELS_LIST), metrics());
    if (const auto view = recall_view()) {
        rows_.set_widths(view->column_widths, metrics());
    } else {
        const int edges = 2 * metric(SM_CXEDGE, metrics().dpi());
        const int room = static_cast<int>(first_size().cx) - 2 * metrics().across(7) - edges -
                         metric(SM_CXVSCROLL, metrics().dpi());
        rows_.fit_widths(metrics(), room);
    }
    enable_buttons();
    SetFocus(control(IDC_CHRONELS_LIST));
}

/// The menu's icon in the title bar, as a copy of the size that there is room for: a caller's icon may be of
/// any, or no icon at all. Then the frame has none, in place of the system's for programs without one.
void chronel_dialog::show_icon() noexcept {
    const int side = metric(SM_CXSMICON, metrics().dpi());
    win::unique_icon copy(static_cast<HICON>(CopyImage(icon_, IMAGE_ICON, side, side, 0)));
    SendMessageW(window(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(copy.get()));
    small_icon_ = std::move(copy);
    if (!small_icon_) {
        SetWindowLongPtrW(window(), GWL_EXSTYLE,
                          GetWindowLongPtrW(window(), GWL_EXSTYLE) | WS_EX_DLGMODALFRAME);
    }
}

void chronel_dialog::on_metrics() {
    rows_.rescale(metrics());
    show_icon();
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
        case LVN_GETDISPINFOW:
            rows_.tell(reinterpret_cast<NMLVDISPINFOW&>(notification).item);
            break;
        case LVN_ODFINDITEMW:
            return -1;  // typing looks for nothing: there are no names to type
        case LVN_COLUMNCLICK:
            rows_.sort(reinterpret_cast<NMLISTVIEW&>(notification).iSubItem);
            break;
        case LVN_ITEMCHANGED:
        case LVN_ODSTATECHANGED:
            enable_buttons();
            break;
        case NM_DBLCLK:
            if (reinterpret_cast<NMITEMACTIVATE&>(notification).iItem >= 0) {
                choose(chronel_action_open);
            }
            break;
        default:
            break;
    }
    return 0;
}

std::optional<LRESULT> chronel_dialog::on_message(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_CONTEXTMENU && reinterpret_cast<HWND>(wparam) == control(IDC_CHRONELS_LIST)) {
        const bool by_key = lparam == -1;
        show_menu(by_key ? rows_.menu_place() : POINT{GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
        return 0;
    }
    if (message == WM_DESTROY) {
        RECT client{};
        GetClientRect(window(), &client);
        remember_view(
            {{metrics().to_96(client.right), metrics().to_96(client.bottom)}, rows_.widths_at_96(metrics())});
    }
    return std::nullopt;
}

void chronel_dialog::show_menu(POINT at) {
    const version_menu menu(texts(), rows_.sorted_column(), rows_.selected().has_value());
    const version_menu::choice chosen = menu.show(window(), at);
    if (chosen.action != 0) {
        return choose(chosen.action);
    }
    if (chosen.column) {
        rows_.sort(*chosen.column);
    }
}

void chronel_dialog::enable_buttons() noexcept {
    const BOOL enabled = rows_.selected() ? TRUE : FALSE;
    EnableWindow(control(IDC_CHRONELS_OPEN), enabled);
    EnableWindow(control(IDC_CHRONELS_RESTORE), enabled);
}

void chronel_dialog::choose(std::uint32_t action) {
    const auto place = rows_.selected();
    if (!place) {
        return;
    }
    chronel item = chronels_.at(*place);
    if (!fits(item)) {
        show_message(window(), &texts(), numbers::version_not_usable, MB_ICONWARNING);
        return;
    }
    chosen_ = std::move(item);
    action_ = action;
    end(IDOK);
}

int chronel_dialog::button_row_width() const {
    int width = -metrics().across(4);
    for (const std::uint32_t number : {numbers::open, numbers::restore, numbers::cancel}) {
        width += metrics().button_width(texts().text(number)) + metrics().across(4);
    }
    return width;
}

SIZE chronel_dialog::least_size() const {
    return {std::max(button_row_width(), metrics().across(200)) + 2 * metrics().across(7),
            metrics().down(150)};
}

SIZE chronel_dialog::first_size() const {
    const SIZE least = least_size();
    SIZE wanted{metrics().across(320), metrics().down(220)};
    if (const auto view = recall_view()) {
        wanted = {metrics().from_96(static_cast<int>(std::clamp<LONG>(view->client.cx, 0, largest_client))),
                  metrics().from_96(static_cast<int>(std::clamp<LONG>(view->client.cy, 0, largest_client)))};
    }
    return {std::max(least.cx, wanted.cx), std::max(least.cy, wanted.cy)};
}

void chronel_dialog::lay_out(placing& controls, SIZE client) const {
    const dialog_metrics& to = metrics();
    const int width = static_cast<int>(client.cx) - 2 * to.across(7);
    const int line = static_cast<int>(to.size_of(L"x").cy);
    const int field = to.down(14);

    stack rows(controls, {to.across(7), to.down(7)}, width);
    rows.add(IDC_CHRONELS_FILE_LABEL, line);
    rows.gap(to.down(2));
    rows.add(IDC_CHRONELS_FILE, line + to.down(2));
    rows.gap(to.down(5));
    rows.add(IDC_CHRONELS_LABEL, line);
    rows.gap(to.down(2));
    const int below = field + 2 * to.down(7);
    rows.add(IDC_CHRONELS_LIST, std::max(static_cast<int>(client.cy) - rows.bottom() - below, 0));
    rows.gap(to.down(7));
    const auto button = [&](int id, std::uint32_t number) {
        return stack::sized_control{id, to.button_width(texts().text(number))};
    };
    rows.add_at_end({button(IDC_CHRONELS_OPEN, numbers::open), button(IDC_CHRONELS_RESTORE, numbers::restore),
                     button(IDCANCEL, numbers::cancel)},
                    to.across(4), field);
}

}  // namespace ov::dialog
