#include "companions/orvdialog/chronel_columns.h"

#include <commctrl.h>
#include <shlwapi.h>

#include <array>

namespace ov::dialog {

namespace {

std::wstring saved(const chronel& item) {
    if (!item.time) {
        return {};
    }
    const FILETIME file_time{static_cast<DWORD>(*item.time), static_cast<DWORD>(*item.time >> 32)};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    std::array<wchar_t, 80> date{};
    std::array<wchar_t, 80> time{};
    if (FileTimeToSystemTime(&file_time, &utc) == FALSE ||
        SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) == FALSE ||
        GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date.data(),
                        static_cast<int>(date.size()), nullptr) == 0 ||
        GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &local, nullptr, time.data(),
                        static_cast<int>(time.size())) == 0) {
        return {};
    }
    return std::wstring(date.data()) + L" " + time.data();
}

std::wstring size(const chronel& item) {
    std::array<wchar_t, 40> text{};
    if (!item.size_bytes || *item.size_bytes > static_cast<std::uint64_t>(INT64_MAX) ||
        StrFormatByteSizeW(static_cast<LONGLONG>(*item.size_bytes), text.data(),
                           static_cast<UINT>(text.size())) == nullptr) {
        return {};
    }
    return text.data();
}

std::wstring type(const chronel& item) {
    return item.type;
}

std::wstring file(const chronel& item) {
    return item.file_name.substr(item.file_name.find_last_of(L"\\/") + 1);
}

struct column {
    const wchar_t* heading;
    int width_percent;
    int format;
    std::wstring (*cell)(const chronel&);
};

constexpr std::array columns{
    column{L"Saved", 34, LVCFMT_LEFT, saved},
    column{L"Size", 16, LVCFMT_RIGHT, size},
    column{L"Kind", 20, LVCFMT_LEFT, type},
    column{L"File name", 30, LVCFMT_LEFT, file},
};

}  // namespace

void add_chronel_columns(HWND list) noexcept {
    RECT area{};
    GetClientRect(list, &area);
    // Room for the scroll bar that a long list brings.
    const int width = area.right - GetSystemMetrics(SM_CXVSCROLL);
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        const column& added = columns[i];
        LVCOLUMNW data{};
        data.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        data.pszText = const_cast<wchar_t*>(added.heading);
        data.cx = width * added.width_percent / 100;
        data.fmt = added.format;
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&data));
    }
}

std::wstring chronel_cell(const chronel& item, int column) {
    return column >= 0 && column < static_cast<int>(columns.size()) ? columns[column].cell(item)
                                                                    : std::wstring();
}

}  // namespace ov::dialog
