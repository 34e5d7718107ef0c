#pragma once

#include <shobjidl.h>

namespace ov::wine_window {

/// Puts the items of one of Wine's folder views into the order in which the folder gives them out, when the
/// folder calls its items equal.
///
/// Windows' views keep that order for equal items; Wine's sort turns it round. A folder that tells its first
/// two items apart (CompareIDs) is left as it is. `list` is the view's list control.
void keep_folder_order(IFolderView* view, HWND list) noexcept;

}  // namespace ov::wine_window
