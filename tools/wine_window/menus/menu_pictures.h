#pragma once

#include <windows.h>

#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::wine_window {

/// Shows a menu's check-mark bitmaps as Windows draws them: whole, and transparent where their alpha says so.
/// Wine cuts them to the size of a check mark and draws what is transparent black.
///
/// Each becomes a picture that the menu's owner draws, submenus included: the owner passes WM_MEASUREITEM and
/// WM_DRAWITEM on as long as the menu is shown. The bitmaps stay whose they are.
class menu_pictures : noncopyable, nonmoveable {
  public:
    explicit menu_pictures(HMENU menu);

    /// True for an item that this object shows; its message is then answered.
    [[nodiscard]] bool measure(MEASUREITEMSTRUCT& asked) const noexcept;
    [[nodiscard]] bool draw(const DRAWITEMSTRUCT& asked) const noexcept;

    [[nodiscard]] std::size_t count() const noexcept { return bitmaps_.size(); }

  private:
    void take_over(HMENU menu);
    [[nodiscard]] HBITMAP find(ULONG_PTR item_data) const noexcept;

    /// The bitmaps shown; an item's data names its own.
    std::vector<HBITMAP> bitmaps_;
};

}  // namespace ov::wine_window
