#pragma once

#include <windows.h>

#include <array>
#include <optional>

#include "companions/orvdialog/chronels/chronel_columns.h"

namespace ov::dialog {

/// How the user left the window of earlier versions, in pixels at 96 dots per inch.
struct versions_view {
    SIZE client;
    std::array<int, chronel_column_count> column_widths;
};

/// What was remembered in this process, for as long as it runs; nothing before the first time. What comes
/// back may be anything, as other programs of the same user could change it: bound it. Any thread.
[[nodiscard]] std::optional<versions_view> recall_view() noexcept;

void remember_view(const versions_view& view) noexcept;

}  // namespace ov::dialog
