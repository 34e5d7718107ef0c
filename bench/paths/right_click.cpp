// A right-click on a folder: the menu object made, told the selection, asked for its items and let go; the
// module as it is shipped, the host's menu made and destroyed.

#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <array>
#include <string>

#include "bench/harness/catch2.h"
#include "bench/harness/compare.h"
#include "bench/harness/round_trip.h"
#include "module/state/class_ids.h"
#include "ovufc/ipc/drvport/wire.h"
#include "res/resource_ids.h"
#include "testkit/process/shipped_module.h"
#include "testkit/files/temp_folder.h"
#include "testkit/service/scripted_service.h"
#include "testkit/shell/data_object.h"

namespace {

using Microsoft::WRL::ComPtr;
using ov::bench::compare;
using ov::bench::require;

class clicked_folder {
  public:
    clicked_folder() : selection_(ov::test::select_paths({folder_.path()})) {
        require(module_.get_class_object(ov::class_ids::shell_extension, IID_PPV_ARGS(&factory_)) == S_OK,
                "DllGetClassObject");
    }

    /// What the module does, from outside.
    void click(int items) {
        ComPtr<IContextMenu> menu;
        ComPtr<IShellExtInit> init;
        require(factory_->CreateInstance(nullptr, IID_PPV_ARGS(&menu)) == S_OK, "CreateInstance");
        require(menu.As(&init) == S_OK && init->Initialize(nullptr, selection_.Get(), nullptr) == S_OK,
                "Initialize");
        const HMENU host = CreatePopupMenu();
        require(menu->QueryContextMenu(host, 0, 1, 0x7FFF, CMF_NORMAL) == items + 1, "QueryContextMenu");
        DestroyMenu(host);
    }

    /// The system's calls that a click cannot do without, and `answer` in place of the port.
    template <class Answer>
    void floor(int items, Answer answer) {
        const int side = GetSystemMetrics(SM_CXMENUSIZE);
        const auto icon = static_cast<HICON>(LoadImageW(module_.handle(), MAKEINTRESOURCEW(IDI_ORVANE),
                                                        IMAGE_ICON, side, side, LR_DEFAULTCOLOR));
        const HBITMAP bitmap = draw(icon, side);
        read_selection();
        answer();
        const HMENU host = CreatePopupMenu();
        const HMENU submenu = CreateMenu();
        for (int item = 0; item < items; ++item) {
            InsertMenuW(submenu, item, MF_BYPOSITION, 1 + item, L"an item");
            SetMenuItemBitmaps(submenu, item, MF_BYPOSITION, nullptr, nullptr);
        }
        InsertMenuW(host, 0, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(submenu), L"Orvane");
        SetMenuItemBitmaps(host, 0, MF_BYPOSITION, bitmap, bitmap);
        DestroyMenu(host);
        DestroyIcon(icon);
        DeleteObject(bitmap);
    }

  private:
    static HBITMAP draw(HICON icon, int side) {
        ICONINFO parts{};
        require(GetIconInfo(icon, &parts) != FALSE, "GetIconInfo");
        DeleteObject(parts.hbmMask);
        DeleteObject(parts.hbmColor);
        BITMAPINFO format{};
        format.bmiHeader = {.biSize = sizeof format.bmiHeader,
                            .biWidth = side,
                            .biHeight = side,
                            .biPlanes = 1,
                            .biBitCount = 32,
                            .biCompression = BI_RGB,
                            .biSizeImage = 0,
                            .biXPelsPerMeter = 0,
                            .biYPelsPerMeter = 0,
                            .biClrUsed = 0,
                            .biClrImportant = 0};
        const HDC screen = GetDC(nullptr);
        const HDC memory = CreateCompatibleDC(screen);
        void* pixels = nullptr;
        const HBITMAP bitmap = CreateDIBSection(screen, &format, DIB_RGB_COLORS, &pixels, nullptr, 0);
        const HGDIOBJ before = SelectObject(memory, bitmap);
        DrawIconEx(memory, 0, 0, icon, side, side, 0, nullptr, DI_NORMAL | DI_NOMIRROR);
        SelectObject(memory, before);
        DeleteDC(memory);
        ReleaseDC(nullptr, screen);
        return bitmap;
    }

    void read_selection() {
        FORMATETC format{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
        STGMEDIUM medium{};
        require(selection_->GetData(&format, &medium) == S_OK, "GetData");
        const auto drop = static_cast<HDROP>(GlobalLock(medium.hGlobal));
        std::array<wchar_t, MAX_PATH + 1> path{};
        require(DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0) == 1, "DragQueryFileW");
        DragQueryFileW(drop, 0, path.data(), MAX_PATH + 1);
        (void)GetFileAttributesW(path.data());
        GlobalUnlock(medium.hGlobal);
        ReleaseStgMedium(&medium);
    }

    ov::test::shipped_module module_;
    ov::test::temp_folder folder_;
    ComPtr<ov::test::data_object> selection_;
    ComPtr<IClassFactory> factory_;
};

TEST_CASE("right-click, service there", "[served]") {
    ov::test::scripted_service service(
        [](const auto&) { return R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"full"}})"; });
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    clicked_folder folder;
    ov::bench::round_trip trip;
    compare("right-click, service there", {.aim = 1.5, .quantile = 0.9, .pause_ms = 30, .rounds = 16},
            {{"ours", [&] { folder.click(4); }, {}},
             {"same calls, event round trip", [&] { folder.floor(4, [&] { trip.go(); }); }, {}}});
}

// Without the driver: the program runs once more after it was stopped.
TEST_CASE("right-click, driver absent", "[absent]") {
    const auto open_device = [] {
        return CreateFileW(ORV_DEVICE_PATH, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    require(open_device() == INVALID_HANDLE_VALUE, "the driver's absence");
    clicked_folder folder;
    // To ask about the folder, for its flags, and for the menu: each tries anew.
    const auto three_opens = [&] {
        for (int open = 0; open < 3; ++open) {
            (void)open_device();
        }
    };
    compare("right-click, driver absent", {.aim = 1.1, .pause_ms = 5, .rounds = 16},
            {{"ours", [&] { folder.click(1); }, {}},
             {"same calls, three failed opens", [&] { folder.floor(1, three_opens); }, {}},
             {"same calls, no open", [&] { folder.floor(1, [] {}); }, {}}});
}

}  // namespace
