#include "tests/unit/companions/orvdialog/window/text_fit.h"

#include <commctrl.h>

#include <algorithm>
#include <array>

#include "ovufc/win/utf8.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {

namespace {

constexpr int button_edges = 8;
constexpr int radio_mark = 18;
constexpr int sort_arrow = 16;
constexpr int heading_edges = 8;

UINT dpi_of_font(HWND control) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font, &font);
    return static_cast<UINT>(std::max(96, MulDiv(std::abs(font.lfHeight), 96, 12)));
}

int scaled(HWND control, int at_96) {
    return MulDiv(at_96, static_cast<int>(dpi_of_font(control)), 96);
}

SIZE room_for(HWND control, const std::wstring& text, UINT format, int width) {
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ former =
        SelectObject(screen, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT area{0, 0, width, 0};
    DrawTextW(screen, text.c_str(), -1, &area, format | DT_CALCRECT);
    SelectObject(screen, former);
    ReleaseDC(nullptr, screen);
    return {area.right, area.bottom};
}

SIZE client_of(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

std::wstring class_of(HWND window) {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

std::string complaint(HWND control, const std::wstring& text, SIZE needed, SIZE given) {
    return "control " + std::to_string(GetDlgCtrlID(control)) + " \"" +
           win::to_utf8(text).value_or(std::string()) + "\" needs " + std::to_string(needed.cx) + " x " +
           std::to_string(needed.cy) + ", has " + std::to_string(given.cx) + " x " + std::to_string(given.cy);
}

void check_headings(HWND list, std::vector<std::string>& complaints) {
    const HWND header = ListView_GetHeader(list);
    for (int i = 0; i < Header_GetItemCount(header); ++i) {
        std::array<wchar_t, 260> text{};
        HDITEMW item{};
        item.mask = HDI_TEXT | HDI_WIDTH;
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        SIZE needed = room_for(list, text.data(), DT_SINGLELINE | DT_NOPREFIX, 0);
        needed.cx += scaled(list, sort_arrow + heading_edges);
        const SIZE given{item.cxy, client_of(header).cy};
        if (text[0] == L'\0' || needed.cx > given.cx || needed.cy > given.cy) {
            complaints.push_back(complaint(list, text.data(), needed, given));
        }
    }
}

void check_control(HWND control, std::vector<std::string>& complaints) {
    const std::wstring kind = class_of(control);
    const std::wstring text = text_of(control);
    const SIZE given = client_of(control);
    SIZE needed{};
    if (kind == L"Button") {
        const bool is_radio = (GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
        needed = room_for(control, text, DT_SINGLELINE, 0);
        needed.cx += scaled(control, is_radio ? radio_mark : button_edges);
    } else if (kind == L"Static") {
        const bool is_plain = (GetWindowLongPtrW(control, GWL_STYLE) & SS_NOPREFIX) != 0;
        needed = room_for(control, text, DT_WORDBREAK | (is_plain ? DT_NOPREFIX : 0), given.cx);
    } else if (kind == L"Edit") {
        needed = {0, room_for(control, L"Äg", DT_SINGLELINE, 0).cy};
    } else if (kind == WC_LISTVIEWW) {
        check_headings(control, complaints);
    }
    if (needed.cx > given.cx || needed.cy > given.cy) {
        complaints.push_back(complaint(control, text, needed, given));
    }
}

RECT place_of(HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    return place;
}

void check_places(HWND dialog, const std::vector<HWND>& controls, std::vector<std::string>& complaints) {
    RECT client{};
    GetClientRect(dialog, &client);
    MapWindowPoints(dialog, nullptr, reinterpret_cast<POINT*>(&client), 2);
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const RECT place = place_of(controls[i]);
        RECT common{};
        if (IntersectRect(&common, &place, &client) == FALSE || EqualRect(&common, &place) == FALSE) {
            complaints.push_back("control " + std::to_string(GetDlgCtrlID(controls[i])) + " stands outside");
        }
        for (std::size_t other = 0; other < i; ++other) {
            const RECT others = place_of(controls[other]);
            if (IntersectRect(&common, &place, &others) != FALSE) {
                complaints.push_back("controls " + std::to_string(GetDlgCtrlID(controls[other])) + " and " +
                                     std::to_string(GetDlgCtrlID(controls[i])) + " overlap");
            }
        }
    }
}

}  // namespace

std::vector<std::string> cut_texts(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (IsWindowVisible(child) != FALSE) {
            controls.push_back(child);
        }
    }
    std::vector<std::string> complaints;
    for (const HWND control : controls) {
        check_control(control, complaints);
    }
    check_places(dialog, controls, complaints);
    return complaints;
}

}  // namespace ov::dialog
