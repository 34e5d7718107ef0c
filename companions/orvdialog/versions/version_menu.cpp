#include "companions/orvdialog/versions/version_menu.h"

#include "companions/orvdialog/chronels/chronel_columns.h"
#include "companions/orvdialog/texts/message_numbers.h"
#include "ovufc/dialog/dialog_records.h"

namespace ov::dialog {

namespace {

/// The numbers of the items: the actions' own, then those of the columns.
constexpr UINT first_column_item = 100;

}  // namespace

version_menu::version_menu(const dialog_texts& texts, int sorted_column, bool has_row)
    : menu_(CreatePopupMenu()), right_to_left_(texts.is_right_to_left()) {
    const UINT state = has_row ? MF_ENABLED : MF_GRAYED;
    AppendMenuW(menu_.get(), state, chronel_action_open, texts.text(message_numbers::open).c_str());
    AppendMenuW(menu_.get(), state, chronel_action_restore, texts.text(message_numbers::restore).c_str());
    SetMenuDefaultItem(menu_.get(), chronel_action_open, FALSE);
    AppendMenuW(menu_.get(), MF_SEPARATOR, 0, nullptr);

    win::unique_menu columns(CreatePopupMenu());
    for (int i = 0; i < chronel_column_count; ++i) {
        AppendMenuW(columns.get(), MF_STRING, first_column_item + static_cast<UINT>(i),
                    texts.text(chronel_columns[i].heading).c_str());
    }
    const UINT sorted = first_column_item + static_cast<UINT>(sorted_column);
    CheckMenuRadioItem(columns.get(), first_column_item, first_column_item + chronel_column_count - 1, sorted,
                       MF_BYCOMMAND);
    if (AppendMenuW(menu_.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(columns.get()),
                    texts.text(message_numbers::sort_by).c_str()) != FALSE) {
        (void)columns.release();
    }
}

version_menu::choice version_menu::show(HWND owner, POINT at) const noexcept {
    const UINT direction = right_to_left_ ? TPM_LAYOUTRTL : 0;
    const UINT chosen = static_cast<UINT>(TrackPopupMenuEx(
        menu_.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON | direction, at.x, at.y, owner, nullptr));
    if (chosen >= first_column_item) {
        return {0, static_cast<int>(chosen - first_column_item)};
    }
    return {chosen, std::nullopt};
}

}  // namespace ov::dialog
