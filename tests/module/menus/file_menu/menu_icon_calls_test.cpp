#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include <string>
#include <vector>

#include "module/state/class_ids.h"
#include "testkit/process/shipped_module.h"
#include "testkit/imports/import_patch.h"

// The calls by which the menu's icon and bitmap are made and given back, in their order.
namespace ov::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> calls;
decltype(&GetSystemMetrics) real_metrics;
decltype(&LoadImageW) real_load;
decltype(&GetIconInfo) real_info;
decltype(&GetDC) real_get_dc;
decltype(&CreateCompatibleDC) real_create_dc;
decltype(&CreateDIBSection) real_dib;
decltype(&DrawIconEx) real_draw;
decltype(&DeleteDC) real_delete_dc;
decltype(&ReleaseDC) real_release_dc;
decltype(&DestroyIcon) real_destroy;
decltype(&DeleteObject) real_delete;
HBITMAP made_bitmap;

int WINAPI metrics(int index) {
    calls.push_back("metric " + std::to_string(index));
    return real_metrics(index);
}
HANDLE WINAPI load(HINSTANCE module, LPCWSTR name, UINT type, int cx, int cy, UINT flags) {
    calls.emplace_back("load icon");
    return real_load(module, name, type, cx, cy, flags);
}
BOOL WINAPI info(HICON icon, PICONINFO parts) {
    calls.emplace_back("take apart");
    return real_info(icon, parts);
}
HDC WINAPI get_dc(HWND window) {
    calls.emplace_back(window == nullptr ? "screen" : "window");
    return real_get_dc(window);
}
HDC WINAPI create_dc(HDC like) {
    calls.emplace_back("memory");
    return real_create_dc(like);
}
HBITMAP WINAPI dib(HDC dc, const BITMAPINFO* format, UINT usage, void** pixels, HANDLE section,
                   DWORD offset) {
    calls.emplace_back("bitmap");
    return made_bitmap = real_dib(dc, format, usage, pixels, section, offset);
}
BOOL WINAPI draw(HDC dc, int x, int y, HICON icon, int cx, int cy, UINT step, HBRUSH brush, UINT flags) {
    calls.emplace_back("draw");
    return real_draw(dc, x, y, icon, cx, cy, step, brush, flags);
}
BOOL WINAPI delete_dc(HDC dc) {
    calls.emplace_back("delete memory");
    return real_delete_dc(dc);
}
int WINAPI release_dc(HWND window, HDC dc) {
    calls.emplace_back("release screen");
    return real_release_dc(window, dc);
}
BOOL WINAPI destroy(HICON icon) {
    calls.emplace_back("destroy icon");
    return real_destroy(icon);
}
BOOL WINAPI delete_object(HGDIOBJ object) {
    // The icon's own parts are deleted at once; when is nobody's business.
    if (object == made_bitmap) {
        calls.emplace_back("delete bitmap");
    }
    return real_delete(object);
}

template <class Function>
class noted {
  public:
    noted(HMODULE module, const char* dll, const char* name, Function* replacement, Function*& real)
        : patch_(module, dll, name, replacement) {
        real = patch_.original();
    }

  private:
    import_patch<Function> patch_;
};

class MenuIconCalls : public testing::Test {
  protected:
    MenuIconCalls() {
        calls.clear();
        made_bitmap = nullptr;
    }

    shipped_module module_;

  private:
    const HMODULE handle_ = module_.handle();
    const noted<decltype(GetSystemMetrics)> metrics_{handle_, "user32.dll", "GetSystemMetrics", &metrics,
                                                     real_metrics};
    const noted<decltype(LoadImageW)> load_{handle_, "user32.dll", "LoadImageW", &load, real_load};
    const noted<decltype(GetIconInfo)> info_{handle_, "user32.dll", "GetIconInfo", &info, real_info};
    const noted<decltype(GetDC)> get_dc_{handle_, "user32.dll", "GetDC", &get_dc, real_get_dc};
    const noted<decltype(CreateCompatibleDC)> create_dc_{handle_, "gdi32.dll", "CreateCompatibleDC",
                                                         &create_dc, real_create_dc};
    const noted<decltype(CreateDIBSection)> dib_{handle_, "gdi32.dll", "CreateDIBSection", &dib, real_dib};
    const noted<decltype(DrawIconEx)> draw_{handle_, "user32.dll", "DrawIconEx", &draw, real_draw};
    const noted<decltype(DeleteDC)> delete_dc_{handle_, "gdi32.dll", "DeleteDC", &delete_dc, real_delete_dc};
    const noted<decltype(ReleaseDC)> release_dc_{handle_, "user32.dll", "ReleaseDC", &release_dc,
                                                 real_release_dc};
    const noted<decltype(DestroyIcon)> destroy_{handle_, "user32.dll", "DestroyIcon", &destroy, real_destroy};
    const noted<decltype(DeleteObject)> delete_{handle_, "gdi32.dll", "DeleteObject", &delete_object,
                                                real_delete};
};

TEST_F(MenuIconCalls, new_menu_asks_for_the_size_once_and_draws_once) {
    IContextMenu* menu = nullptr;
    ASSERT_EQ(module_.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)), S_OK);
    // 54 is SM_CXMENUSIZE.
    EXPECT_THAT(calls, ElementsAre("metric 54", "load icon", "take apart", "screen", "memory", "bitmap",
                                   "draw", "delete memory", "release screen"));
    menu->Release();
}

TEST_F(MenuIconCalls, last_release_gives_icon_then_bitmap_back) {
    IContextMenu* menu = nullptr;
    ASSERT_EQ(module_.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)), S_OK);
    calls.clear();
    menu->AddRef();
    menu->Release();
    EXPECT_THAT(calls, testing::IsEmpty());
    menu->Release();
    EXPECT_THAT(calls, ElementsAre("destroy icon", "delete bitmap"));
}

}  // namespace
}  // namespace ov::test
