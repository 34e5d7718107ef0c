#include "companions/orvdialog/layout/stack.h"

namespace ov::dialog {

void stack::add(int control_id, int height) noexcept {
    controls_.put(control_id, left_, y_, width_, height);
    y_ += height;
}

void stack::add_beside(int control_id, int end_control_id, int end_width, int gap, int height) noexcept {
    controls_.put(control_id, left_, y_, width_ - end_width - gap, height);
    controls_.put(end_control_id, left_ + width_ - end_width, y_, end_width, height);
    y_ += height;
}

void stack::add_at_end(std::initializer_list<sized_control> row, int gap, int height) noexcept {
    int left = left_ + width_ + gap;
    for (const sized_control& control : row) {
        left -= control.width + gap;
    }
    for (const sized_control& control : row) {
        controls_.put(control.id, left, y_, control.width, height);
        left += control.width + gap;
    }
    y_ += height;
}

}  // namespace ov::dialog
