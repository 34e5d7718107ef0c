#include "ovufc/time/datetime.h"

#include <cstdlib>
#include <cwchar>
#include <optional>

#include "ovufc/exception.h"
#include "ovufc/time/text_patterns.h"
#include "ovufc/time/time_fields.h"
#include "ovufc/time/wide_print.h"

namespace ov::time {

namespace {

constexpr std::size_t text_limit_chars = 64;
constexpr std::size_t offset_limit_chars = 16;

[[noreturn]] void refuse() {
    throw exception("mismatch ISO-8601 format");
}

// Reads date, time and milliseconds from a text without its zone.
time_fields read_fields(std::wstring text) {
    time_fields fields;
    if (const auto dot = text.rfind(L'.'); dot != std::wstring::npos) {
        // As they stand, so that ".5" is 5 ms.
        fields.milliseconds = static_cast<int>(std::wcstol(text.c_str() + dot + 1, nullptr, 10));
        text.resize(dot);
    }
    wchar_t separator = L'\0';
    if (_snwscanf(text.c_str(), text.size(), L"%d-%d-%d%c%d:%d:%d", &fields.year, &fields.month, &fields.day,
                  &separator, &fields.hour, &fields.minute, &fields.second) != 7) {
        refuse();
    }
    return fields;
}

std::optional<std::uint64_t> read_utc_or_local(const std::wstring& text) {
    if (text.back() == L'Z') {
        return utc_file_time(read_fields(text.substr(0, text.size() - 1)));
    }
    return local_file_time(read_fields(text));
}

std::optional<std::uint64_t> read_with_offset(const std::wstring& text) {
    const auto plus = text.find(L'+');
    const auto zone = plus != std::wstring::npos ? plus : text.rfind(L'-');
    const time_zone_offset offset = read_time_zone_offset(text.substr(zone));
    const auto time = utc_file_time(read_fields(text.substr(0, zone)));
    return time ? add_minutes(*time, offset.bias) : std::nullopt;
}

std::wstring offset_text() {
    const std::int32_t bias = current_time_zone_offset().bias;
    const int minutes = std::abs(bias);
    return print<offset_limit_chars>(L"%c%02d:%02d", bias <= 0 ? L'+' : L'-', minutes / 60, minutes % 60);
}

}  // namespace

void datetime::parse(const std::wstring& text) {
    std::optional<std::uint64_t> time;
    if (patterns::is_iso(text)) {
        time = read_utc_or_local(text);
    } else if (patterns::is_iso_with_offset(text)) {
        time = read_with_offset(text);
    }
    if (!time) {
        refuse();
    }
    value = *time;
}

std::wstring datetime::format(bool local, bool withMilliseconds) const {
    const auto time = value != 0 ? split(value, local) : std::nullopt;
    if (!time) {
        return {};
    }
    std::wstring text = print<text_limit_chars>(L"%04d-%02d-%02dT%02d:%02d:%02d", time->wYear, time->wMonth,
                                                time->wDay, time->wHour, time->wMinute, time->wSecond);
    if (withMilliseconds) {
        text += print<text_limit_chars>(L".%03d", time->wMilliseconds);
    }
    return text + (local ? offset_text() : L"Z");
}

}  // namespace ov::time
