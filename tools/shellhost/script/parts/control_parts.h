#pragma once

#include "tools/shellhost/script/parts/shown_parts.h"

namespace ov::shellhost {

/// The parts of Wine's browser: a tree control and a list control of this process.
class control_parts final : public shown_parts {
  public:
    /// `browser` is the window that holds the browser, `view` the view's own.
    control_parts(HWND browser, HWND view) noexcept;

    [[nodiscard]] std::vector<pane_node> nodes() const override;
    [[nodiscard]] bool expand(const std::wstring& node) const override;
    [[nodiscard]] std::optional<RECT> place_of_item(const std::wstring& name, int index) const override;

  private:
    HWND tree_;
    HWND list_;
};

}  // namespace ov::shellhost
