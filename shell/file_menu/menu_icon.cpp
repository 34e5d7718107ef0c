#include "shell/file_menu/menu_icon.h"

#include "module/state/module_state.h"
#include "res/resource_ids.h"

namespace ov::shell {

namespace {

// An icon that GetIconInfo fails for cannot be drawn either. The caller has to delete the two bitmaps that it
// returns.
bool is_drawable(HICON icon) noexcept {
    ICONINFO parts{};
    if (GetIconInfo(icon, &parts) == FALSE) {
        return false;
    }
    const win::unique_bitmap mask(parts.hbmMask);
    const win::unique_bitmap colour(parts.hbmColor);
    return true;
}

win::unique_bitmap make_dib(HDC dc, int side) noexcept {
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = side;
    format.bmiHeader.biHeight = side;  // positive: bottom-up
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    format.bmiHeader.biCompression = BI_RGB;
    void* pixels = nullptr;
    return win::unique_bitmap(CreateDIBSection(dc, &format, DIB_RGB_COLORS, &pixels, nullptr, 0));
}

}  // namespace

int menu_icon_side() noexcept {
    return GetSystemMetrics(SM_CXMENUSIZE);
}

win::unique_icon load_menu_icon(int side) noexcept {
    return win::unique_icon(
        static_cast<HICON>(LoadImageW(module_state::module_instance, MAKEINTRESOURCEW(IDI_ORVANE), IMAGE_ICON,
                                      side, side, LR_DEFAULTCOLOR)));
}

win::unique_bitmap make_menu_bitmap(HICON icon, int side) noexcept {
    if (icon == nullptr || !is_drawable(icon)) {
        return {};
    }
    const win::unique_screen_dc screen(GetDC(nullptr));
    const win::unique_memory_dc memory(CreateCompatibleDC(screen.get()));
    if (!memory) {
        return {};
    }
    win::unique_bitmap bitmap = make_dib(screen.get(), side);
    if (bitmap) {
        const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
        // Without mirroring: in right-to-left hosts the product's mark must not be turned around.
        DrawIconEx(memory.get(), 0, 0, icon, side, side, 0, nullptr, DI_NORMAL | DI_NOMIRROR);
        SelectObject(memory.get(), before);
    }
    return bitmap;
}

}  // namespace ov::shell
