#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

/// Between a file time and its calendar fields. No value comes back for fields and times that the system's
/// calendar does not have.
namespace ov::time {

/// The calendar fields as a text gives them; nothing is known of their ranges.
struct time_fields {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int milliseconds = 0;
};

/// The file time of fields in UTC.
[[nodiscard]] std::optional<std::uint64_t> utc_file_time(const time_fields& fields) noexcept;
/// The file time of fields in local time, by the zone's rules as they are now (LocalFileTimeToFileTime).
[[nodiscard]] std::optional<std::uint64_t> local_file_time(const time_fields& fields) noexcept;
/// `file_time` and so many minutes.
[[nodiscard]] std::optional<std::uint64_t> add_minutes(std::uint64_t file_time,
                                                       std::int32_t minutes) noexcept;

/// The fields of a file time, in UTC or in local time by the rules of that date.
[[nodiscard]] std::optional<SYSTEMTIME> split(std::uint64_t file_time, bool local) noexcept;

}  // namespace ov::time
