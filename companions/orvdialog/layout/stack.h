#pragma once

#include <windows.h>

#include <initializer_list>

#include "companions/orvdialog/layout/placing.h"

namespace ov::dialog {

/// Controls one below the other, each as wide as the stack, in pixels.
class stack {
  public:
    struct sized_control {
        int id;
        int width;
    };

    stack(placing& controls, POINT top_left, int width) noexcept
        : controls_(controls), left_(top_left.x), y_(top_left.y), width_(width) {}

    void add(int control_id, int height) noexcept;
    /// One that takes what room another leaves at its end.
    void add_beside(int control_id, int end_control_id, int end_width, int gap, int height) noexcept;
    /// A row that ends where the stack ends.
    void add_at_end(std::initializer_list<sized_control> row, int gap, int height) noexcept;
    void gap(int height) noexcept { y_ += height; }
    /// What follows begins so much further in.
    void indent(int by) noexcept {
        left_ += by;
        width_ -= by;
    }

    [[nodiscard]] int width() const noexcept { return width_; }
    [[nodiscard]] int bottom() const noexcept { return y_; }

  private:
    placing& controls_;
    int left_;
    int y_;
    int width_;
};

}  // namespace ov::dialog
