#include <windows.h>

#include <array>
#include <optional>

#include "ovufc/time/datetime.h"
#include "ovufc/time/time_fields.h"

namespace ov::time {

namespace {

// The longest text that is asked for, in characters.
constexpr int text_limit_chars = 260;
using text_buffer = std::array<wchar_t, text_limit_chars>;

std::wstring date_text(const SYSTEMTIME& time, bool longDate) {
    text_buffer buffer{};
    const DWORD flags = (longDate ? DATE_LONGDATE : DATE_SHORTDATE) | DATE_AUTOLAYOUT;
    const int size_chars = GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, flags, &time, nullptr, buffer.data(),
                                           text_limit_chars, nullptr);
    return size_chars > 0 ? buffer.data() : std::wstring();
}

std::wstring time_text(const SYSTEMTIME& time) {
    text_buffer buffer{};
    const int size_chars =
        GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &time, nullptr, buffer.data(), text_limit_chars);
    return size_chars > 0 ? buffer.data() : std::wstring();
}

}  // namespace

std::wstring datetime_rfc1123::display(bool local, bool longDate) const {
    const auto time = value != 0 ? split(value, local) : std::nullopt;
    if (!time) {
        return {};
    }
    const std::wstring date = date_text(*time, longDate);
    const std::wstring time_of_day = time_text(*time);
    if (date.empty() || time_of_day.empty()) {
        return date + time_of_day;  // a locale that lacks one of them still shows the other
    }
    return date + L" " + time_of_day;
}

std::wstring datetime_rfc1123::displayDate(bool local, bool longDate) const {
    const auto time = value != 0 ? split(value, local) : std::nullopt;
    return time ? date_text(*time, longDate) : std::wstring();
}

}  // namespace ov::time
