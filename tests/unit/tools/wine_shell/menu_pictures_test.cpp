#include "tools/wine_shell/menu_pictures.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "tools/shellhost/menu_query.h"
#include "tools/wine_shell/system.h"

namespace ov::wine_shell {
namespace {

constexpr int side = 16;

/// A bitmap of one colour, premultiplied, with the given alpha.
unique_bitmap make_mark(std::uint32_t pixel) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = side;
    info.bmiHeader.biHeight = side;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    unique_bitmap made(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    for (int i = 0; i < side * side; ++i) {
        static_cast<std::uint32_t*>(bits)[i] = pixel;
    }
    return made;
}

COLORREF colour_of_first_picture(HMENU menu) {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_BITMAP;
    GetMenuItemInfoW(menu, 0, TRUE, &info);
    const HDC device = CreateCompatibleDC(nullptr);
    const HGDIOBJ previous = SelectObject(device, info.hbmpItem);
    const COLORREF colour = GetPixel(device, side / 2, side / 2);
    SelectObject(device, previous);
    DeleteDC(device);
    return colour;
}

TEST(MenuPictures, TransparentMark_ShowsTheMenusBackground) {
    if (!system_is_wine()) {
        GTEST_SKIP() << "Windows draws the marks itself";
    }
    const unique_bitmap mark = make_mark(0);
    const shellhost::unique_menu menu(CreatePopupMenu());
    AppendMenuW(menu.get(), MF_STRING, 1, L"item");
    SetMenuItemBitmaps(menu.get(), 0, MF_BYPOSITION, mark.get(), mark.get());
    const auto pictures = show_marks_as_pictures(menu.get());
    EXPECT_EQ(pictures.size(), 1U);
    EXPECT_EQ(colour_of_first_picture(menu.get()), GetSysColor(COLOR_MENU));
}

TEST(MenuPictures, OpaqueMark_KeepsItsColour) {
    if (!system_is_wine()) {
        GTEST_SKIP() << "Windows draws the marks itself";
    }
    const unique_bitmap mark = make_mark(0xFF204060);
    const shellhost::unique_menu menu(CreatePopupMenu());
    AppendMenuW(menu.get(), MF_STRING, 1, L"item");
    SetMenuItemBitmaps(menu.get(), 0, MF_BYPOSITION, mark.get(), mark.get());
    const auto pictures = show_marks_as_pictures(menu.get());
    EXPECT_EQ(colour_of_first_picture(menu.get()), RGB(0x20, 0x40, 0x60));
}

TEST(MenuPictures, ItemWithoutMark_IsLeftAlone) {
    const shellhost::unique_menu menu(CreatePopupMenu());
    AppendMenuW(menu.get(), MF_STRING, 1, L"item");
    EXPECT_TRUE(show_marks_as_pictures(menu.get()).empty());
}

}  // namespace
}  // namespace ov::wine_shell
