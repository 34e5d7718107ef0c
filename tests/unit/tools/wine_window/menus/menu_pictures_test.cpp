#include "tools/wine_window/menus/menu_pictures.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "ovufc/win/ui_handle.h"
#include "tools/shellhost/menus/menu_query.h"

namespace ov::wine_window {
namespace {

constexpr int side = 16;

/// A bitmap of one premultiplied colour.
win::unique_bitmap make_bitmap(std::uint32_t pixel) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = side;
    info.bmiHeader.biHeight = side;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    win::unique_bitmap made(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    for (int i = 0; i < side * side; ++i) {
        static_cast<std::uint32_t*>(bits)[i] = pixel;
    }
    return made;
}

class MenuPictures : public testing::Test {
  protected:
    MenuPictures() : menu(CreatePopupMenu()) { AppendMenuW(menu.get(), MF_STRING, 1, L"item"); }

    void mark(const win::unique_bitmap& bitmap) const {
        SetMenuItemBitmaps(menu.get(), 0, MF_BYPOSITION, bitmap.get(), bitmap.get());
    }

    /// The colour in the middle of the picture when it is drawn onto `background`.
    static COLORREF drawn(const menu_pictures& pictures, const win::unique_bitmap& mark,
                          std::uint32_t background) {
        const win::unique_bitmap target = make_bitmap(background);
        const HDC device = CreateCompatibleDC(nullptr);
        const HGDIOBJ previous = SelectObject(device, target.get());
        DRAWITEMSTRUCT asked{};
        asked.CtlType = ODT_MENU;
        asked.hDC = device;
        asked.rcItem = {0, 0, side, side};
        asked.itemData = reinterpret_cast<ULONG_PTR>(mark.get());
        EXPECT_TRUE(pictures.draw(asked));
        const COLORREF colour = GetPixel(device, side / 2, side / 2);
        SelectObject(device, previous);
        DeleteDC(device);
        return colour;
    }

    win::unique_menu menu;
};

TEST_F(MenuPictures, transparent_mark_shows_what_is_behind_it) {
    const win::unique_bitmap transparent = make_bitmap(0);
    mark(transparent);
    const menu_pictures pictures(menu.get());
    EXPECT_EQ(pictures.count(), 1U);
    EXPECT_EQ(drawn(pictures, transparent, 0xFF808000), RGB(0x80, 0x80, 0x00));
}

TEST_F(MenuPictures, opaque_mark_keeps_its_colour) {
    const win::unique_bitmap opaque = make_bitmap(0xFF204060);
    mark(opaque);
    const menu_pictures pictures(menu.get());
    EXPECT_EQ(drawn(pictures, opaque, 0xFFFFFFFF), RGB(0x20, 0x40, 0x60));
}

TEST_F(MenuPictures, marked_item_is_measured_and_drawn_by_its_owner) {
    const win::unique_bitmap opaque = make_bitmap(0xFF204060);
    mark(opaque);
    const menu_pictures pictures(menu.get());
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_BITMAP | MIIM_CHECKMARKS;
    ASSERT_TRUE(GetMenuItemInfoW(menu.get(), 0, TRUE, &info));
    EXPECT_EQ(info.hbmpItem, HBMMENU_CALLBACK);
    EXPECT_EQ(info.hbmpUnchecked, nullptr);
    MEASUREITEMSTRUCT asked{};
    asked.CtlType = ODT_MENU;
    asked.itemData = reinterpret_cast<ULONG_PTR>(opaque.get());
    EXPECT_TRUE(pictures.measure(asked));
    EXPECT_EQ(asked.itemWidth, static_cast<UINT>(GetSystemMetrics(SM_CXSMICON)));
}

TEST_F(MenuPictures, items_of_others_are_left_alone) {
    const menu_pictures pictures(menu.get());
    EXPECT_EQ(pictures.count(), 0U);
    MEASUREITEMSTRUCT measured{};
    measured.CtlType = ODT_MENU;
    measured.itemData = 1234;
    EXPECT_FALSE(pictures.measure(measured));
    DRAWITEMSTRUCT drawn_item{};
    drawn_item.CtlType = ODT_BUTTON;
    EXPECT_FALSE(pictures.draw(drawn_item));
}

}  // namespace
}  // namespace ov::wine_window
