#include "companions/orvdialog/versions/version_rows.h"

#include <uxtheme.h>

#include <algorithm>
#include <numeric>
#include <string>

namespace ov::dialog {

namespace {

/// Rows whose texts decide how wide a column is at first.
constexpr std::size_t measured_rows = 20;
/// No window is so wide.
constexpr int widest_column = 5000;

}  // namespace

void version_rows::fill(HWND control, const dialog_metrics& metrics) {
    control_ = control;
    dpi_ = metrics.dpi();
    ListView_SetExtendedListViewStyle(control, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP);
    SetWindowTheme(control, L"Explorer", nullptr);
    for (int i = 0; i < chronel_column_count; ++i) {
        std::wstring heading = texts_.text(chronel_columns[i].heading);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        column.pszText = heading.data();
        column.cx = metrics.across(40);
        column.fmt = chronel_columns[i].format;
        SendMessageW(control, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    }
    ListView_SetItemCountEx(control, static_cast<int>(order_.rows()), 0);
    select(0);
    show_sorting();
}

int version_rows::heading_width(int column, const dialog_metrics& metrics) const {
    const int arrow_and_margins = metrics.across(24);
    return static_cast<int>(metrics.size_of(texts_.text(chronel_columns[column].heading)).cx) +
           arrow_and_margins;
}

void version_rows::set_widths(const widths& at_96, const dialog_metrics& metrics) {
    for (int i = 0; i < chronel_column_count; ++i) {
        const int least = heading_width(i, metrics);
        ListView_SetColumnWidth(control_, i,
                                std::max(least, metrics.from_96(std::clamp(at_96[i], 0, widest_column))));
    }
}

version_rows::widths version_rows::widths_at_96(const dialog_metrics& metrics) const noexcept {
    widths now{};
    for (int i = 0; i < chronel_column_count; ++i) {
        now[i] = metrics.to_96(ListView_GetColumnWidth(control_, i));
    }
    return now;
}

void version_rows::rescale(const dialog_metrics& metrics) noexcept {
    if (control_ == nullptr) {
        return;
    }
    for (int i = 0; i < chronel_column_count; ++i) {
        const int former = ListView_GetColumnWidth(control_, i);
        ListView_SetColumnWidth(control_, i,
                                MulDiv(former, static_cast<int>(metrics.dpi()), static_cast<int>(dpi_)));
    }
    dpi_ = metrics.dpi();
}

void version_rows::fit_widths(const dialog_metrics& metrics, int room) {
    const int margins = metrics.across(10);
    widths fitting{};
    for (int i = 0; i < chronel_column_count; ++i) {
        fitting[i] = heading_width(i, metrics);
        for (std::size_t row = 0; row < std::min(order_.rows(), measured_rows); ++row) {
            const std::wstring cell = chronel_columns[i].cell(list_, order_.place_of(row), texts_);
            const int needed = static_cast<int>(metrics.size_of(cell).cx) + margins;
            fitting[i] = std::max(fitting[i], std::min(needed, metrics.across(160)));
        }
    }
    const int spare = room - std::accumulate(fitting.begin(), fitting.end(), 0);
    fitting.back() += std::max(spare, 0);
    for (int i = 0; i < chronel_column_count; ++i) {
        ListView_SetColumnWidth(control_, i, fitting[i]);
    }
}

void version_rows::tell(LVITEMW& item) const {
    if ((item.mask & LVIF_TEXT) != 0 && item.cchTextMax > 0 && item.iItem >= 0 && item.iSubItem >= 0 &&
        item.iSubItem < chronel_column_count && static_cast<std::size_t>(item.iItem) < order_.rows()) {
        const chronel_column& column = chronel_columns[item.iSubItem];
        lstrcpynW(item.pszText, column.cell(list_, order_.place_of(item.iItem), texts_).c_str(),
                  item.cchTextMax);
    }
}

void version_rows::sort(int column) {
    if (column < 0 || column >= chronel_column_count) {
        return;
    }
    const auto place = selected();
    // A number's column begins with the largest, and so with the newest: that is what people look for.
    const bool descending =
        column == order_.column() ? !order_.is_descending() : chronel_columns[column].number != nullptr;
    order_.sort(column, descending);
    show_sorting();
    if (place) {
        select(order_.row_of(*place));
    }
    InvalidateRect(control_, nullptr, FALSE);
}

int version_rows::selected_row() const noexcept {
    return ListView_GetNextItem(control_, -1, LVNI_SELECTED);
}

std::optional<std::size_t> version_rows::selected() const noexcept {
    const int row = selected_row();
    if (row < 0 || static_cast<std::size_t>(row) >= order_.rows()) {
        return std::nullopt;
    }
    return order_.place_of(static_cast<std::size_t>(row));
}

void version_rows::select(std::size_t row) noexcept {
    ListView_SetItemState(control_, static_cast<int>(row), LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(control_, static_cast<int>(row), FALSE);
}

void version_rows::show_sorting() noexcept {
    const HWND header = ListView_GetHeader(control_);
    for (int i = 0; i < chronel_column_count; ++i) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (i == order_.column()) {
            item.fmt |= order_.is_descending() ? HDF_SORTDOWN : HDF_SORTUP;
        }
        SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    }
}

POINT version_rows::menu_place() const noexcept {
    RECT area{};
    const int row = selected_row();
    if (row >= 0) {
        ListView_EnsureVisible(control_, row, FALSE);
        ListView_GetItemRect(control_, row, &area, LVIR_LABEL);
    }
    POINT at{area.left, area.bottom};
    ClientToScreen(control_, &at);
    return at;
}

}  // namespace ov::dialog
