// Date texts, beside the calls of the system that each must make.

#include <windows.h>

#include <array>
#include <cwchar>
#include <string>

#include "bench/harness/catch2.h"
#include "bench/harness/compare.h"
#include "ovufc/time/datetime.h"

namespace {

using ov::bench::compare;
using ov::bench::require;

constexpr const wchar_t* iso_text = L"2021-03-04T05:06:07Z";
constexpr const wchar_t* rfc_text = L"Thu, 04 Mar 2021 05:06:07 GMT";

SYSTEMTIME some_time() {
    return {.wYear = 2021,
            .wMonth = 3,
            .wDayOfWeek = 4,
            .wDay = 4,
            .wHour = 5,
            .wMinute = 6,
            .wSecond = 7,
            .wMilliseconds = 0};
}

TEST_CASE("dates", "[alone]") {
    ov::time::datetime_rfc1123 date;
    date.parse(rfc_text);
    const auto scan = [](const wchar_t* text, const wchar_t* format) {
        std::array<int, 6> numbers{};
        wchar_t separator = 0;
        (void)swscanf(text, format, &numbers[0], &numbers[1], &numbers[2], &separator, &numbers[3],
                      &numbers[4], &numbers[5]);
        SYSTEMTIME time = some_time();
        time.wSecond = static_cast<WORD>(numbers[5]);
        FILETIME value{};
        require(numbers[5] == 7 && SystemTimeToFileTime(&time, &value) != FALSE, "the scan");
    };
    const auto print = [&](const wchar_t* format) {
        const ULARGE_INTEGER ticks{.QuadPart = date.value};
        const FILETIME value{ticks.LowPart, ticks.HighPart};
        SYSTEMTIME time{};
        FileTimeToSystemTime(&value, &time);
        std::array<wchar_t, 64> text{};
        _snwprintf(text.data(), text.size(), format, time.wYear, time.wMonth, time.wDay, time.wHour,
                   time.wMinute, time.wSecond);
        require(!std::wstring(text.data()).empty(), "_snwprintf");
    };
    compare("date text read, ISO", {.aim = 2},
            {{"ours",
              [] {
                  ov::time::datetime_rfc1123 read;
                  read.datetime::parse(iso_text);
              },
              {}},
             {"scan and conversion", [&] { scan(iso_text, L"%d-%d-%d%c%d:%d:%d"); }, {}}});
    compare("date text read, RFC 1123", {.aim = 2},
            {{"ours",
              [] {
                  ov::time::datetime_rfc1123 read;
                  read.parse(rfc_text);
              },
              {}},
             {"scan and conversion", [&] { scan(iso_text, L"%d-%d-%d%c%d:%d:%d"); }, {}}});
    compare("date text written, RFC 1123", {.aim = 2},
            {{"ours", [&] { require(!date.format(false).empty(), "format"); }, {}},
             {"conversion and print", [&] { print(L"%d-%d-%d %d:%d:%d GMT"); }, {}}});
    compare("date for people", {.aim = 2.5},
            {{"ours", [&] { require(!date.display(false, true).empty(), "display"); }, {}},
             {"GetDateFormatEx, GetTimeFormatEx",
              [] {
                  const SYSTEMTIME time = some_time();
                  std::array<wchar_t, 260> text{};
                  GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_LONGDATE | DATE_AUTOLAYOUT, &time, nullptr,
                                  text.data(), 260, nullptr);
                  GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &time, nullptr, text.data(), 260);
                  require(text[0] != 0, "GetTimeFormatEx");
              },
              {}}});
}

}  // namespace
