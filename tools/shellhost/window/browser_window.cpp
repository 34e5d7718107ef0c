#include "tools/shellhost/window/browser_window.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>

#include "ovufc/com/adopt.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/folder/namespace_root.h"
#include "tools/shellhost/window/browser_events.h"
#include "tools/wine_window/system.h"
#include "tools/wine_window/view_dressing.h"

namespace ov::shellhost {

namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* window_class = L"OrvaneShellHost";
constexpr const wchar_t* title_end = L" - shellhost";
constexpr int window_width = 1000;
constexpr int window_height = 640;
constexpr int least_width = 420;
constexpr int least_height = 280;
constexpr UINT message_arrived = WM_APP + 1;

std::wstring name_of(PCIDLIST_ABSOLUTE place, SIGDN kind) {
    wchar_t* name = nullptr;
    if (FAILED(SHGetNameFromIDList(place, kind, &name))) {
        return {};
    }
    const com::unique_task_text owner(name);
    return name;
}

UINT mode_of(int command) {
    switch (command) {
        case command_large_icons:
            return FVM_ICON;
        case command_list:
            return FVM_LIST;
        default:
            return FVM_DETAILS;
    }
}

void register_class(WNDPROC procedure) {
    WNDCLASSEXW made{};
    made.cbSize = sizeof made;
    made.lpfnWndProc = procedure;
    made.hInstance = GetModuleHandleW(nullptr);
    made.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    made.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    made.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    made.lpszClassName = window_class;
    RegisterClassExW(&made);
}

}  // namespace

browser_window::browser_window() : keys_(make_keys()) {
    register_class(&browser_window::procedure);
    CreateWindowExW(0, window_class, L"shellhost", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                    CW_USEDEFAULT, window_width, window_height, nullptr, make_menu_bar(),
                    GetModuleHandleW(nullptr), this);
    if (window_ == nullptr) {
        throw command_failure(L"the window cannot be made");
    }
    create_browser();
    ShowWindow(window_, SW_SHOWNORMAL);
    UpdateWindow(window_);
}

browser_window::~browser_window() {
    close();
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
    DestroyAcceleratorTable(keys_);
}

void browser_window::create_browser() {
    HRESULT result = CoCreateInstance(CLSID_ExplorerBrowser, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_PPV_ARGS(browser_.GetAddressOf()));
    if (SUCCEEDED(result)) {
        const FOLDERSETTINGS settings{FVM_DETAILS, 0};
        const RECT area = client_area();
        (void)browser_->SetOptions(EBO_SHOWFRAMES);
        result = browser_->Initialize(window_, &area, &settings);
    }
    if (FAILED(result)) {
        throw command_failure(L"the system's explorer browser cannot be made: " + describe(result));
    }
    site_ = com::adopt(com::make_object<browser_site>(browser_.Get()));
    const ComPtr<browser_events> events = com::adopt(com::make_object<browser_events>(
        [this] { is_navigating_ = true; }, [this](PCIDLIST_ABSOLUTE place) { arrived(place); }));
    (void)browser_->Advise(events.Get(), &events_cookie_);
}

HRESULT browser_window::browse(PCIDLIST_ABSOLUTE place) {
    return place != nullptr ? browser_->BrowseToIDList(place, SBSP_ABSOLUTE) : E_INVALIDARG;
}

void browser_window::go(UINT where) {
    (void)browser_->BrowseToIDList(nullptr, where);
}

void browser_window::arrived(PCIDLIST_ABSOLUTE place) {
    is_navigating_ = false;
    place_.reset(ILCloneFull(place));
    // The view is told of the arrival itself, and has its window only after this call.
    PostMessageW(window_, message_arrived, 0, 0);
}

void browser_window::complete_view() {
    SetWindowTextW(window_, (name_of(place_.get(), SIGDN_NORMALDISPLAY) + title_end).c_str());
    if (const ComPtr<IFolderView2> shown = view(); shown != nullptr && wine_window::system_is_wine()) {
        wine_window::complete_view(shown.Get(), site_.Get());
    }
}

void browser_window::set_mode(int command) {
    if (const ComPtr<IFolderView2> shown = view(); shown != nullptr) {
        (void)shown->SetCurrentViewMode(mode_of(command));
        // Wine leaves parts of the mode before on the screen.
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    }
}

ComPtr<IFolderView2> browser_window::view() const {
    ComPtr<IFolderView2> shown;
    if (browser_ != nullptr) {
        (void)browser_->GetCurrentView(IID_PPV_ARGS(shown.GetAddressOf()));
    }
    return shown;
}

void browser_window::run(int command) {
    switch (command) {
        case command_back:
            return go(SBSP_NAVIGATEBACK);
        case command_forward:
            return go(SBSP_NAVIGATEFORWARD);
        case command_up:
            return go(SBSP_PARENT);
        case command_home:
            return (void)browse(list_of_namespace_root().get());
        case command_large_icons:
        case command_list:
        case command_details:
            return set_mode(command);
        case command_refresh: {
            ComPtr<IShellView> shown;
            if (SUCCEEDED(browser_->GetCurrentView(IID_PPV_ARGS(shown.GetAddressOf())))) {
                (void)shown->Refresh();
                complete_view();
            }
            return;
        }
        case command_close:
            PostMessageW(window_, WM_CLOSE, 0, 0);
            return;
        default:
            return;
    }
}

bool browser_window::translate(MSG& message) const {
    if (TranslateAcceleratorW(window_, keys_, &message) != 0) {
        return true;
    }
    ComPtr<IInputObject> input;
    return browser_ != nullptr && SUCCEEDED(browser_.As(&input)) &&
           input->TranslateAcceleratorIO(&message) == S_OK;
}

RECT browser_window::client_area() const {
    RECT area{};
    GetClientRect(window_, &area);
    return area;
}

void browser_window::close() {
    if (browser_ != nullptr) {
        (void)browser_->Unadvise(events_cookie_);
        (void)browser_->Destroy();
        browser_.Reset();
        site_->forget_browser();
    }
}

std::wstring browser_window::title() const {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
}

LRESULT browser_window::answer(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_SIZE:
            if (browser_ != nullptr) {
                (void)browser_->SetRect(nullptr, client_area());
            }
            return 0;
        case WM_GETMINMAXINFO: {
            const auto dpi = static_cast<int>(GetDpiForWindow(window_));
            reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {
                MulDiv(least_width, dpi, USER_DEFAULT_SCREEN_DPI),
                MulDiv(least_height, dpi, USER_DEFAULT_SCREEN_DPI)};
            return 0;
        }
        case WM_DPICHANGED: {
            const RECT& place = *reinterpret_cast<const RECT*>(lparam);
            SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left,
                         place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
            return 0;
        }
        case WM_COMMAND:
            run(LOWORD(wparam));
            return 0;
        case message_arrived:
            complete_view();
            return 0;
        case WM_CLOSE:
            close();
            DestroyWindow(window_);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        case WM_NCDESTROY:
            window_ = nullptr;
            return 0;
        default:
            return DefWindowProcW(window_, message, wparam, lparam);
    }
}

LRESULT CALLBACK browser_window::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        auto* made =
            static_cast<browser_window*>(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
        made->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
    }
    auto* self = reinterpret_cast<browser_window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self != nullptr ? self->answer(message, wparam, lparam)
                           : DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace ov::shellhost
