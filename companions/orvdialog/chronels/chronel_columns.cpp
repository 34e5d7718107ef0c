#include "companions/orvdialog/chronels/chronel_columns.h"

#include <commctrl.h>
#include <shlwapi.h>

#include <algorithm>

#include "companions/orvdialog/texts/message_numbers.h"

namespace ov::dialog {

namespace {

namespace numbers = message_numbers;

/// In the zone of the user by the rules of that year: a winter's date has no summer time, and one from before
/// a change of the rules has the old ones.
bool to_local(const FILETIME& file_time, SYSTEMTIME& local) noexcept {
    SYSTEMTIME utc{};
    TIME_ZONE_INFORMATION rules{};
    return FileTimeToSystemTime(&file_time, &utc) != FALSE &&
           GetTimeZoneInformationForYear(utc.wYear, nullptr, &rules) != FALSE &&
           SystemTimeToTzSpecificLocalTime(&rules, &utc, &local) != FALSE;
}

std::wstring saved(const chronel_list& list, std::size_t place, const dialog_texts& /*texts*/) {
    const auto at = list.time(place);
    if (!at) {
        return {};
    }
    const FILETIME file_time{static_cast<DWORD>(*at), static_cast<DWORD>(*at >> 32)};
    SYSTEMTIME local{};
    std::array<wchar_t, 80> date{};
    std::array<wchar_t, 80> time{};
    if (!to_local(file_time, local) ||
        GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date.data(),
                        static_cast<int>(date.size()), nullptr) == 0 ||
        GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &local, nullptr, time.data(),
                        static_cast<int>(time.size())) == 0) {
        return {};
    }
    return std::wstring(date.data()) + L" " + time.data();
}

std::uint64_t saved_number(const chronel_list& list, std::size_t place) {
    return list.time(place).value_or(0);
}

std::wstring size(const chronel_list& list, std::size_t place, const dialog_texts& /*texts*/) {
    const auto bytes = list.size_bytes(place);
    std::array<wchar_t, 40> text{};
    if (!bytes || *bytes > static_cast<std::uint64_t>(INT64_MAX) ||
        StrFormatByteSizeW(static_cast<LONGLONG>(*bytes), text.data(), static_cast<UINT>(text.size())) ==
            nullptr) {
        return {};
    }
    return text.data();
}

std::uint64_t size_number(const chronel_list& list, std::size_t place) {
    return list.size_bytes(place).value_or(0);
}

struct kind_text {
    const wchar_t* type;
    std::uint32_t number;
};
/// The kinds that the product makes; any other is shown as it stands in the record.
constexpr std::array kind_texts{
    kind_text{L"first copy", numbers::kind_first_copy},
    kind_text{L"restore point", numbers::kind_restore_point},
    kind_text{L"before a restore", numbers::kind_before_restore},
};

std::wstring kind(const chronel_list& list, std::size_t place, const dialog_texts& texts) {
    std::wstring type = list.at(place).type;
    const auto* const known = std::ranges::find(kind_texts, type, &kind_text::type);
    return known == kind_texts.end() ? type : texts.text(known->number);
}

std::wstring file_name(const chronel_list& list, std::size_t place, const dialog_texts& /*texts*/) {
    const std::wstring name = list.at(place).file_name;
    return name.substr(name.find_last_of(L"\\/") + 1);
}

}  // namespace

constexpr std::array<chronel_column, chronel_column_count> chronel_columns{{
    {numbers::column_saved, LVCFMT_LEFT, saved, saved_number},
    {numbers::column_size, LVCFMT_RIGHT, size, size_number},
    {numbers::column_kind, LVCFMT_LEFT, kind, nullptr},
    {numbers::column_file_name, LVCFMT_LEFT, file_name, nullptr},
}};

}  // namespace ov::dialog
