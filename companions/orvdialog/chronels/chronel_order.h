#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "companions/orvdialog/chronels/chronel_columns.h"
#include "companions/orvdialog/chronels/chronel_list.h"
#include "companions/orvdialog/texts/dialog_texts.h"

namespace ov::dialog {

/// In which order the rows show a list's records: newest first, until it is sorted otherwise. Of equal ones
/// the order before stays. `list` and `texts` must outlive it. Throws std::bad_alloc only.
class chronel_order {
  public:
    chronel_order(const chronel_list& list, const dialog_texts& texts);

    void sort(int column, bool descending);

    [[nodiscard]] int column() const noexcept { return column_; }
    [[nodiscard]] bool is_descending() const noexcept { return descending_; }
    [[nodiscard]] std::size_t rows() const noexcept { return places_.size(); }
    /// The place in the list of what a row shows.
    [[nodiscard]] std::size_t place_of(std::size_t row) const noexcept { return places_[row]; }
    [[nodiscard]] std::size_t row_of(std::size_t place) const noexcept;

  private:
    [[nodiscard]] std::vector<std::uint64_t> keys_of(const chronel_column& column) const;
    [[nodiscard]] std::vector<std::uint64_t> ranks_of(const chronel_column& column) const;

    const chronel_list& list_;
    const dialog_texts& texts_;
    std::vector<std::uint32_t> places_;
    int column_ = saved_column;
    bool descending_ = true;
};

}  // namespace ov::dialog
