#include "shell/file_menu/menu_icon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "testkit/checks/handle_ledger.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/module_attach.h"

namespace ov::shell {
namespace {

using test::import_patch;
using testing::IsEmpty;

HMODULE this_program() {
    return GetModuleHandleW(nullptr);
}

TEST(MenuIcon, bitmap_is_square_with_32_bits_a_pixel_bottom_up) {
    const win::unique_icon icon = load_menu_icon(menu_icon_side());
    ASSERT_TRUE(icon);
    const win::unique_bitmap bitmap = make_menu_bitmap(icon.get(), menu_icon_side());
    ASSERT_TRUE(bitmap);
    DIBSECTION section{};
    ASSERT_EQ(GetObjectW(bitmap.get(), sizeof section, &section), static_cast<int>(sizeof section));
    const int side = GetSystemMetrics(SM_CXMENUSIZE);
    EXPECT_EQ(section.dsBmih.biWidth, side);
    EXPECT_EQ(section.dsBmih.biHeight, side);
    EXPECT_EQ(section.dsBmih.biBitCount, 32);
    EXPECT_EQ(section.dsBmih.biCompression, static_cast<DWORD>(BI_RGB));
}

TEST(MenuIcon, bitmap_carries_the_icons_transparency) {
    const win::unique_icon icon = load_menu_icon(menu_icon_side());
    const win::unique_bitmap bitmap = make_menu_bitmap(icon.get(), menu_icon_side());
    DIBSECTION section{};
    ASSERT_EQ(GetObjectW(bitmap.get(), sizeof section, &section), static_cast<int>(sizeof section));
    ASSERT_NE(section.dsBm.bmBits, nullptr);
    const auto pixels = static_cast<std::size_t>(section.dsBmih.biWidth) * section.dsBmih.biHeight;
    std::vector<std::uint32_t> colours(pixels);
    std::memcpy(colours.data(), section.dsBm.bmBits, pixels * sizeof(std::uint32_t));
    int opaque = 0;
    int transparent = 0;
    for (const std::uint32_t colour : colours) {
        opaque += (colour >> 24) == 0xFF ? 1 : 0;
        transparent += (colour >> 24) == 0 ? 1 : 0;
    }
    EXPECT_GT(opaque, 0) << "without alpha the mark is drawn black or not at all";
    EXPECT_GT(transparent, 0) << "without transparent pixels it stands on a square";
}

TEST(MenuIcon, no_icon_gives_no_bitmap) {
    EXPECT_FALSE(make_menu_bitmap(nullptr, menu_icon_side()));
}

TEST(MenuIcon, icon_is_asked_for_at_menu_size_from_this_module) {
    static HINSTANCE asked_module;
    static LPCWSTR asked_name;
    static int asked_cx;
    static int asked_cy;
    static UINT asked_type;
    static UINT asked_flags;
    const import_patch<decltype(LoadImageW)> patch(
        this_program(), "user32.dll", "LoadImageW",
        [](HINSTANCE module, LPCWSTR name, UINT type, int cx, int cy, UINT flags) -> HANDLE {
            asked_module = module;
            asked_name = name;
            asked_type = type;
            asked_cx = cx;
            asked_cy = cy;
            asked_flags = flags;
            return nullptr;
        });
    EXPECT_FALSE(load_menu_icon(menu_icon_side()));
    EXPECT_EQ(asked_module, this_program());
    EXPECT_EQ(asked_name, MAKEINTRESOURCEW(103));
    EXPECT_EQ(asked_type, static_cast<UINT>(IMAGE_ICON));
    EXPECT_EQ(asked_cx, GetSystemMetrics(SM_CXMENUSIZE));
    EXPECT_EQ(asked_cy, asked_cx);
    EXPECT_EQ(asked_flags, 0U);
}

TEST(MenuIcon, icon_is_drawn_whole_and_never_mirrored) {
    static UINT asked_flags;
    const import_patch<decltype(DrawIconEx)> patch(
        this_program(), "user32.dll", "DrawIconEx",
        [](HDC, int, int, HICON, int, int, UINT, HBRUSH, UINT flags) -> BOOL {
            asked_flags = flags;
            return TRUE;
        });
    const win::unique_icon icon = load_menu_icon(menu_icon_side());
    EXPECT_TRUE(make_menu_bitmap(icon.get(), menu_icon_side()));
    EXPECT_EQ(asked_flags, 0x13U);
}

TEST(MenuIcon, every_handle_is_given_back) {
    const test::handle_ledger ledger(this_program());
    {
        const win::unique_icon icon = load_menu_icon(menu_icon_side());
        const win::unique_bitmap bitmap = make_menu_bitmap(icon.get(), menu_icon_side());
        EXPECT_TRUE(bitmap);
    }
    EXPECT_THAT(ledger.outstanding(), IsEmpty());
    EXPECT_EQ(ledger.made_by("GetIconInfo"), 2);
}

// What fails half-way leaves no bitmap and no handle behind.
template <class Function>
void expect_no_bitmap_without(const char* dll, const char* name, Function* failing) {
    const win::unique_icon icon = load_menu_icon(menu_icon_side());
    const import_patch<Function> patch(this_program(), dll, name, failing);
    const test::handle_ledger ledger(this_program());
    EXPECT_FALSE(make_menu_bitmap(icon.get(), menu_icon_side())) << name;
    EXPECT_THAT(ledger.outstanding(), IsEmpty()) << name;
}

TEST(MenuIcon, failure_of_each_step_leaves_no_bitmap_and_no_handle) {
    expect_no_bitmap_without<decltype(GetIconInfo)>("user32.dll", "GetIconInfo",
                                                    [](HICON, PICONINFO) -> BOOL { return FALSE; });
    expect_no_bitmap_without<decltype(CreateCompatibleDC)>("gdi32.dll", "CreateCompatibleDC",
                                                           [](HDC) -> HDC { return nullptr; });
    static int drawn;
    const import_patch<decltype(DrawIconEx)> draws(
        this_program(), "user32.dll", "DrawIconEx",
        [](HDC, int, int, HICON, int, int, UINT, HBRUSH, UINT) -> BOOL { return ++drawn; });
    expect_no_bitmap_without<decltype(CreateDIBSection)>(
        "gdi32.dll", "CreateDIBSection",
        [](HDC, const BITMAPINFO*, UINT, void**, HANDLE, DWORD) -> HBITMAP { return nullptr; });
    EXPECT_EQ(drawn, 0) << "nothing is drawn where there is no bitmap";
}

}  // namespace
}  // namespace ov::shell
