#include "companions/orvdialog/layout/display.h"

#include "ovufc/win/ui_handle.h"

namespace ov::dialog {

namespace {

/// A function that older systems lack; null there.
template <class Function>
Function* user32_function(const char* name) noexcept {
    const auto found = GetProcAddress(GetModuleHandleW(L"user32.dll"), name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

UINT system_dpi() noexcept {
    const win::unique_screen_dc screen(GetDC(nullptr));
    const int dpi = screen ? GetDeviceCaps(screen.get(), LOGPIXELSX) : 0;
    return dpi > 0 ? static_cast<UINT>(dpi) : USER_DEFAULT_SCREEN_DPI;
}

int scaled(int value, UINT dpi) noexcept {
    return MulDiv(value, static_cast<int>(dpi), static_cast<int>(system_dpi()));
}

}  // namespace

UINT dpi_of(HWND window) noexcept {
    const auto get = user32_function<UINT WINAPI(HWND)>("GetDpiForWindow");
    const UINT dpi = get != nullptr ? get(window) : 0;
    return dpi != 0 ? dpi : system_dpi();
}

LOGFONTW message_font(UINT dpi) noexcept {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    const auto get =
        user32_function<BOOL WINAPI(UINT, UINT, void*, UINT, UINT)>("SystemParametersInfoForDpi");
    if (get == nullptr || get(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi) == FALSE) {
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        metrics.lfMessageFont.lfHeight = scaled(metrics.lfMessageFont.lfHeight, dpi);
    }
    return metrics.lfMessageFont;
}

int metric(int index, UINT dpi) noexcept {
    const auto get = user32_function<int WINAPI(int, UINT)>("GetSystemMetricsForDpi");
    return get != nullptr ? get(index, dpi) : scaled(GetSystemMetrics(index), dpi);
}

SIZE size_around(SIZE client, HWND window, UINT dpi) noexcept {
    RECT frame{0, 0, client.cx, client.cy};
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    const auto extended_style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
    const auto adjust =
        user32_function<BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT)>("AdjustWindowRectExForDpi");
    if (adjust == nullptr || adjust(&frame, style, FALSE, extended_style, dpi) == FALSE) {
        AdjustWindowRectEx(&frame, style, FALSE, extended_style);
    }
    return {frame.right - frame.left, frame.bottom - frame.top};
}

void leave_scaling_to(HWND dialog) noexcept {
    constexpr int disable_all = 1;  // DDC_DISABLE_ALL
    if (const auto set = user32_function<BOOL WINAPI(HWND, int, int)>("SetDialogDpiChangeBehavior")) {
        set(dialog, disable_all, disable_all);
    }
}

}  // namespace ov::dialog
