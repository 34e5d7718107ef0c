#include "companions/devservice/files/time_text.h"

#include <windows.h>

#include <cstdio>
#include <iterator>

namespace ov::devservice {

std::wstring file_name_time(std::int64_t file_time) {
    ULARGE_INTEGER ticks{};
    ticks.QuadPart = static_cast<ULONGLONG>(file_time);
    const FILETIME utc_time{ticks.LowPart, ticks.HighPart};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    // With the rules of the date shown, so that summer and winter dates are right all year.
    if (!FileTimeToSystemTime(&utc_time, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local)) {
        return L"unknown time";
    }
    wchar_t text[32] = {};
    _snwprintf(text, std::size(text) - 1, L"%04u-%02u-%02u %02u-%02u-%02u", local.wYear, local.wMonth,
               local.wDay, local.wHour, local.wMinute, local.wSecond);
    return text;
}

}  // namespace ov::devservice
