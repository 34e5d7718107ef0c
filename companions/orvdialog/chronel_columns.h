#pragma once

#include <windows.h>

#include <string>

#include "companions/orvdialog/chronel_list.h"

/// The columns of the list of earlier versions.
namespace ov::dialog {

/// Adds the columns to an empty list view, together as wide as it is.
void add_chronel_columns(HWND list) noexcept;

/// What stands in one cell, in the user's own date, time and size formats; empty for a column that is not
/// there and for what the record does not tell.
[[nodiscard]] std::wstring chronel_cell(const chronel& item, int column);

}  // namespace ov::dialog
