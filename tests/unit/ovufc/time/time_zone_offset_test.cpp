#include "ovufc/time/time_zone_offset.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cwchar>
#include <limits>

#include "testkit/imports/import_patch.h"
#include "tests/unit/ovufc/time/time_texts.h"

namespace ov::time {
namespace {

std::string refusal_of_offset(const wchar_t* text) {
    return test::refusal([&] { (void)read_time_zone_offset(text); });
}

TEST(TimeZoneOffset, default_is_utc) {
    EXPECT_EQ(time_zone_offset().bias, 0);
    EXPECT_EQ(time_zone_offset().name, L"UTC");
}

TEST(TimeZoneOffset, sign_says_which_way) {
    EXPECT_EQ(read_time_zone_offset(L"+02:00").bias, -120);
    EXPECT_EQ(read_time_zone_offset(L"+05:30").bias, -330);
    EXPECT_EQ(read_time_zone_offset(L"-05:30").bias, 330);
    EXPECT_EQ(read_time_zone_offset(L"-0:1").bias, 1);
    EXPECT_EQ(read_time_zone_offset(L"+00:00").bias, 0);
    EXPECT_EQ(read_time_zone_offset(L"+05:30").name, L"UTC");
}

TEST(TimeZoneOffset, each_mistake_has_its_message) {
    EXPECT_EQ(refusal_of_offset(L""), "empty timezone string");
    EXPECT_EQ(refusal_of_offset(L"02:00"), "invalid timezone format: missing sign");
    EXPECT_EQ(refusal_of_offset(L" +02:00"), "invalid timezone format: missing sign");
    EXPECT_EQ(refusal_of_offset(L"Z"), "invalid timezone format: missing sign");
    for (const wchar_t* text : {L"+", L"-", L"+02", L"+02:", L"-:30", L"+0200", L"+a:b", L"-%n:%n"}) {
        EXPECT_EQ(refusal_of_offset(text), "invalid timezone format");
    }
}

TEST(TimeZoneOffset, largest_numbers_of_a_date_are_taken_as_they_stand) {
    EXPECT_EQ(read_time_zone_offset(L"+99:99").bias, -(99 * 60 + 99));
    EXPECT_EQ(read_time_zone_offset(L"-99:99").bias, 99 * 60 + 99);
}

// No date holds such numbers: its pattern has two digits for each.
TEST(TimeZoneOffset, enormous_numbers_wrap_as_the_bias_does) {
    EXPECT_EQ(read_time_zone_offset(L"+2147483647:2147483647").bias, -2147483587);
    EXPECT_EQ(read_time_zone_offset(L"-2147483647:2147483647").bias, 2147483587);
    // The smallest of all has no counterpart above zero.
    constexpr auto smallest = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(read_time_zone_offset(L"+35791394:8").bias, smallest);
    EXPECT_EQ(read_time_zone_offset(L"-35791394:8").bias, smallest);
}

DWORD zone_state = 0;

DWORD WINAPI zone_information(LPTIME_ZONE_INFORMATION zone) {
    *zone = {};
    zone->Bias = -60;
    zone->StandardBias = 7;
    zone->DaylightBias = -60;
    wcscpy(zone->StandardName, L"winter");
    // No terminating zero.
    wmemset(zone->DaylightName, L's', 32);
    return zone_state;
}

TEST(CurrentTimeZoneOffset, each_state_of_the_zone_has_its_bias_and_name) {
    test::import_patch<decltype(GetTimeZoneInformation)> patch(GetModuleHandleW(nullptr), "kernel32.dll",
                                                               "GetTimeZoneInformation", zone_information);
    zone_state = TIME_ZONE_ID_DAYLIGHT;
    EXPECT_EQ(current_time_zone_offset().bias, -120);
    EXPECT_EQ(current_time_zone_offset().name, std::wstring(32, L's'));
    zone_state = TIME_ZONE_ID_STANDARD;
    EXPECT_EQ(current_time_zone_offset().bias, -53);
    EXPECT_EQ(current_time_zone_offset().name, L"winter");
    for (const DWORD other : {DWORD{TIME_ZONE_ID_UNKNOWN}, TIME_ZONE_ID_INVALID}) {
        zone_state = other;
        EXPECT_EQ(current_time_zone_offset().bias, -60);
        EXPECT_EQ(current_time_zone_offset().name, L"winter");
    }
}

LONG patched_bias = 0;

DWORD WINAPI zone_with_bias(LPTIME_ZONE_INFORMATION zone) {
    *zone = {};
    zone->Bias = patched_bias;
    return TIME_ZONE_ID_UNKNOWN;
}

TEST(DatetimeFormat, local_text_ends_in_the_offset_of_this_moment) {
    test::import_patch<decltype(GetTimeZoneInformation)> patch(GetModuleHandleW(nullptr), "kernel32.dll",
                                                               "GetTimeZoneInformation", zone_with_bias);
    const struct {
        LONG bias;
        const wchar_t* text;
    } rows[] = {{0, L"+00:00"},    {-330, L"+05:30"}, {300, L"-05:00"}, {-720, L"+12:00"},
                {-825, L"+13:45"}, {1, L"-00:01"},    {-1, L"+00:01"},  {210, L"-03:30"}};
    for (const auto& row : rows) {
        patched_bias = row.bias;
        for (const std::uint64_t value : {1ULL, 132592539670000000ULL, 0x7FFFFFFFFFFFFFFFULL}) {
            const std::wstring text = datetime_rfc1123(value).datetime::format(true, false);
            EXPECT_EQ(text.substr(text.size() - 6), row.text);
        }
    }
}

}  // namespace
}  // namespace ov::time
