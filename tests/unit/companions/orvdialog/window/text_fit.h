#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ov::dialog {

/// What a person would see cut in a dialog: texts that need more room than their controls have, in their own
/// font, headings of lists too; controls that overlap others or stand outside. A sentence each; none when all
/// is well. Measured without the dialog's own code.
[[nodiscard]] std::vector<std::string> cut_texts(HWND dialog);

}  // namespace ov::dialog
