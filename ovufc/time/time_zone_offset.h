#pragma once

#include <cstdint>
#include <string>

namespace ov::time {

/// How far a zone's local time is from UTC.
struct time_zone_offset {
    /// Minutes to add to local time to get UTC: "+02:00" is -120.
    std::int32_t bias = 0;
    std::wstring name = L"UTC";
};

/// Reads a text such as "+05:30": a sign, hours and minutes. Throws ov::exception for any other.
[[nodiscard]] time_zone_offset read_time_zone_offset(const std::wstring& text);

/// The zone of this computer as it is now, summer time included.
[[nodiscard]] time_zone_offset current_time_zone_offset();

}  // namespace ov::time
