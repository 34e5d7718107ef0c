#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "companions/orvdialog/chronels/chronel_list.h"
#include "companions/orvdialog/texts/dialog_texts.h"

/// The columns of the list of earlier versions, by their numbers from 0 on.
namespace ov::dialog {

inline constexpr int chronel_column_count = 4;
/// What the list is sorted by at first: newest first.
inline constexpr int saved_column = 0;

struct chronel_column {
    std::uint32_t heading;  // a text's number
    int format;             // LVCFMT_*
    /// What stands in a cell, in the user's own date, time and size formats; empty for what the record does
    /// not tell.
    std::wstring (*cell)(const chronel_list& list, std::size_t place, const dialog_texts& texts);
    /// The number to sort by; null where the cell's text is sorted by.
    std::uint64_t (*number)(const chronel_list& list, std::size_t place);
};

extern const std::array<chronel_column, chronel_column_count> chronel_columns;

}  // namespace ov::dialog
