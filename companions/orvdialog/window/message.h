#pragma once

#include <windows.h>

#include <cstdint>

#include "companions/orvdialog/texts/dialog_texts.h"

namespace ov::dialog {

/// Shows the text of this number in a box under the product's name, before `owner` (may be null). `texts` may
/// be null, when there was no memory for them: then in English, as always when out of memory.
void show_message(HWND owner, const dialog_texts* texts, std::uint32_t number, UINT icon) noexcept;

}  // namespace ov::dialog
