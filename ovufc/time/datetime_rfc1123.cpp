#include <array>
#include <cwchar>
#include <optional>
#include <span>

#include "ovufc/exception.h"
#include "ovufc/time/datetime.h"
#include "ovufc/time/text_patterns.h"
#include "ovufc/time/time_fields.h"
#include "ovufc/time/wide_print.h"

namespace ov::time {

namespace {

// From Sunday, as the system numbers the days of the week; months from January, numbered from 1.
constexpr std::array<const wchar_t*, 7> day_names = {L"Sun", L"Mon", L"Tue", L"Wed", L"Thu", L"Fri", L"Sat"};
constexpr std::array<const wchar_t*, 12> month_names = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                                                        L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
constexpr const wchar_t* unknown_name = L"Ukn";

constexpr std::size_t text_limit_chars = 64;
constexpr int noon = 12;

// Three letters, and the suffix's 16, each with a terminating zero.
using name_buffer = std::array<wchar_t, 3 + 1>;
using suffix_buffer = std::array<wchar_t, 16 + 1>;

struct read_text {
    time_fields fields;
    suffix_buffer suffix{};
};

[[noreturn]] void refuse() {
    throw exception("mismatch RFC-1123 format");
}

bool is_same(const wchar_t* left, const wchar_t* right) noexcept {
    return _wcsicmp(left, right) == 0;
}

std::size_t index_of(const wchar_t* name, std::span<const wchar_t* const> names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (is_same(name, names[i])) {
            return i;
        }
    }
    refuse();
}

const wchar_t* name_at(std::size_t index, std::span<const wchar_t* const> names) noexcept {
    return index < names.size() ? names[index] : unknown_name;
}

// "lc" and "ls" are wide in every runtime's meaning.
read_text read_rfc1123(const std::wstring& text) {
    read_text read;
    time_fields& fields = read.fields;
    name_buffer day_name{};
    name_buffer month_name{};
    if (_snwscanf(text.c_str(), text.size(), L"%3lc, %d %3lc %d %d:%d:%d %16ls", day_name.data(), &fields.day,
                  month_name.data(), &fields.year, &fields.hour, &fields.minute, &fields.second,
                  read.suffix.data()) < 7) {
        refuse();
    }
    (void)index_of(day_name.data(), day_names);
    fields.month = static_cast<int>(index_of(month_name.data(), month_names)) + 1;
    return read;
}

read_text read_us_date(const std::wstring& text) {
    read_text read;
    time_fields& fields = read.fields;
    if (_snwscanf(text.c_str(), text.size(), L"%d/%d/%d %d:%d:%d %16ls", &fields.month, &fields.day,
                  &fields.year, &fields.hour, &fields.minute, &fields.second, read.suffix.data()) < 6) {
        refuse();
    }
    return read;
}

}  // namespace

void datetime_rfc1123::parse(const std::wstring& text) {
    read_text read;
    if (patterns::is_rfc1123(text)) {
        read = read_rfc1123(text);
    } else if (patterns::is_us_date(text)) {
        read = read_us_date(text);
    } else {
        refuse();
    }
    const wchar_t* suffix = read.suffix.data();
    if (is_same(suffix, L"PM") && read.fields.hour < noon) {
        read.fields.hour += noon;
    }
    const bool is_utc = is_same(suffix, L"GMT") || is_same(suffix, L"UTC");
    const auto time = is_utc ? utc_file_time(read.fields) : local_file_time(read.fields);
    if (!time) {
        refuse();
    }
    value = *time;
}

std::wstring datetime_rfc1123::format(bool local, bool /*withMilliseconds*/) const {
    const auto time = value != 0 ? split(value, local) : std::nullopt;
    if (!time) {
        return {};
    }
    const wchar_t* suffix = L"GMT";
    int hour = time->wHour;
    if (local) {
        suffix = hour >= noon ? L"PM" : L"AM";
        if (hour > noon) {
            hour %= noon;
        }
    }
    // Month 0 wraps to an index beyond the last name.
    return print<text_limit_chars>(L"%ls, %02d %ls %04d %02d:%02d:%02d %ls",
                                   name_at(time->wDayOfWeek, day_names), time->wDay,
                                   name_at(static_cast<std::size_t>(time->wMonth) - 1, month_names),
                                   time->wYear, hour, time->wMinute, time->wSecond, suffix);
}

}  // namespace ov::time
