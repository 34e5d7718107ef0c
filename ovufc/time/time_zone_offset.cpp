#include "ovufc/time/time_zone_offset.h"

#include <windows.h>

#include <cstddef>
#include <cwchar>

#include "ovufc/exception.h"

namespace ov::time {

namespace {

constexpr std::int64_t minutes_per_hour = 60;

std::int64_t read_minutes(const std::wstring& text) {
    int hours = 0;
    int minutes = 0;
    if (_snwscanf(text.c_str(), text.size(), L"%d:%d", &hours, &minutes) != 2) {
        throw exception("invalid timezone format");
    }
    return hours * minutes_per_hour + minutes;
}

// The system's name fields are arrays that need not be terminated.
template <std::size_t SIZE>
std::wstring text_of(const wchar_t (&field)[SIZE]) {
    return {field, wcsnlen(field, SIZE)};
}

}  // namespace

time_zone_offset read_time_zone_offset(const std::wstring& text) {
    if (text.empty()) {
        throw exception("empty timezone string");
    }
    time_zone_offset offset;
    switch (text.front()) {
        case L'+':
            // East of Greenwich local time is ahead, so minutes are taken away to get UTC.
            offset.bias = static_cast<std::int32_t>(-read_minutes(text.substr(1)));
            break;
        case L'-':
            offset.bias = static_cast<std::int32_t>(read_minutes(text.substr(1)));
            break;
        default:
            throw exception("invalid timezone format: missing sign");
    }
    return offset;
}

time_zone_offset current_time_zone_offset() {
    TIME_ZONE_INFORMATION zone{};
    switch (GetTimeZoneInformation(&zone)) {
        case TIME_ZONE_ID_DAYLIGHT:
            return {zone.Bias + zone.DaylightBias, text_of(zone.DaylightName)};
        case TIME_ZONE_ID_STANDARD:
            return {zone.Bias + zone.StandardBias, text_of(zone.StandardName)};
        default:
            return {zone.Bias, text_of(zone.StandardName)};
    }
}

}  // namespace ov::time
