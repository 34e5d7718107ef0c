#pragma once

#include <windows.h>
#include <commctrl.h>

#include <array>
#include <cstddef>
#include <optional>

#include "companions/orvdialog/chronels/chronel_columns.h"
#include "companions/orvdialog/chronels/chronel_order.h"
#include "companions/orvdialog/layout/dialog_metrics.h"
#include "ovufc/noncopyable.h"

namespace ov::dialog {

/// The list control of the window of earlier versions: a virtual one, which asks for the cells that it shows.
/// `list` and `texts` must outlive it; for the window's thread.
class version_rows : private noncopyable, private nonmoveable {
  public:
    using widths = std::array<int, chronel_column_count>;

    version_rows(const chronel_list& list, const dialog_texts& texts)
        : list_(list), texts_(texts), order_(list, texts) {}

    /// Fills the control: headings, rows, the first one selected.
    void fill(HWND control, const dialog_metrics& metrics);
    /// Widths at 96 dots per inch, as remembered; bounded here, and by the headings.
    void set_widths(const widths& at_96, const dialog_metrics& metrics);
    [[nodiscard]] widths widths_at_96(const dialog_metrics& metrics) const noexcept;
    /// The columns keep their share at another number of dots per inch.
    void rescale(const dialog_metrics& metrics) noexcept;
    /// Wide enough for heading and cells of the rows at the top, together at least `room`.
    void fit_widths(const dialog_metrics& metrics, int room);

    /// Answers LVN_GETDISPINFO.
    void tell(LVITEMW& item) const;
    /// Sorts by a column; by the same one again, the other way round. The selected version stays selected.
    void sort(int column);
    [[nodiscard]] int sorted_column() const noexcept { return order_.column(); }
    /// The place in the list of the selected version.
    [[nodiscard]] std::optional<std::size_t> selected() const noexcept;
    /// Where a menu for the selected row belongs, on the screen.
    [[nodiscard]] POINT menu_place() const noexcept;

  private:
    [[nodiscard]] int heading_width(int column, const dialog_metrics& metrics) const;
    [[nodiscard]] int selected_row() const noexcept;
    void select(std::size_t row) noexcept;
    void show_sorting() noexcept;

    const chronel_list& list_;
    const dialog_texts& texts_;
    chronel_order order_;
    HWND control_ = nullptr;
    UINT dpi_ = USER_DEFAULT_SCREEN_DPI;
};

}  // namespace ov::dialog
