#include "companions/orvdialog/layout/placing.h"

namespace ov::dialog {

placing::~placing() {
    if (batch_ != nullptr) {
        EndDeferWindowPos(batch_);
    }
}

void placing::put(int control_id, int left, int top, int width, int height) noexcept {
    if (batch_ != nullptr) {
        batch_ = DeferWindowPos(batch_, GetDlgItem(dialog_, control_id), nullptr, left, top, width, height,
                                SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    }
}

}  // namespace ov::dialog
