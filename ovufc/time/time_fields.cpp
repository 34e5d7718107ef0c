#include "ovufc/time/time_fields.h"

#include <limits>

namespace ov::time {

namespace {

constexpr std::int64_t ticks_per_minute = 600'000'000;

// The system takes file times for signed numbers.
constexpr std::uint64_t largest_file_time = std::numeric_limits<std::int64_t>::max();

std::uint64_t number_of(const FILETIME& time) noexcept {
    return static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

FILETIME file_time_of(std::uint64_t number) noexcept {
    return {static_cast<DWORD>(number), static_cast<DWORD>(number >> 32)};
}

bool is_file_time(std::uint64_t number) noexcept {
    return number <= largest_file_time;
}

}  // namespace

std::optional<std::uint64_t> utc_file_time(const time_fields& fields) noexcept {
    SYSTEMTIME system_time{};
    system_time.wYear = static_cast<WORD>(fields.year);
    system_time.wMonth = static_cast<WORD>(fields.month);
    system_time.wDay = static_cast<WORD>(fields.day);
    system_time.wHour = static_cast<WORD>(fields.hour);
    system_time.wMinute = static_cast<WORD>(fields.minute);
    system_time.wSecond = static_cast<WORD>(fields.second);
    system_time.wMilliseconds = static_cast<WORD>(fields.milliseconds);
    FILETIME time{};
    SYSTEMTIME check{};
    // Wine takes 29 February in any year, for 1 March.
    if (!SystemTimeToFileTime(&system_time, &time) || !FileTimeToSystemTime(&time, &check) ||
        check.wDay != system_time.wDay) {
        return std::nullopt;
    }
    return number_of(time);
}

std::optional<std::uint64_t> local_file_time(const time_fields& fields) noexcept {
    const auto local = utc_file_time(fields);
    if (!local) {
        return std::nullopt;
    }
    const FILETIME local_time = file_time_of(*local);
    FILETIME time{};
    if (!LocalFileTimeToFileTime(&local_time, &time) || !is_file_time(number_of(time))) {
        return std::nullopt;  // in 1601, but not yet in UTC
    }
    return number_of(time);
}

std::optional<std::uint64_t> add_minutes(std::uint64_t file_time, std::int32_t minutes) noexcept {
    // Wraps below zero to something too large, which is refused.
    const std::uint64_t sum = file_time + static_cast<std::uint64_t>(minutes * ticks_per_minute);
    if (!is_file_time(sum)) {
        return std::nullopt;
    }
    return sum;
}

std::optional<SYSTEMTIME> split(std::uint64_t file_time, bool local) noexcept {
    const FILETIME time = file_time_of(file_time);
    SYSTEMTIME utc{};
    if (!FileTimeToSystemTime(&time, &utc)) {
        return std::nullopt;
    }
    if (!local) {
        return utc;
    }
    SYSTEMTIME local_time{};
    if (!SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local_time)) {
        return std::nullopt;
    }
    return local_time;
}

}  // namespace ov::time
