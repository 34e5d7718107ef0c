#include "ovufc/time/datetime.h"

#include <gtest/gtest.h>

#include "tests/unit/ovufc/time/time_texts.h"

namespace ov::time {
namespace {

using test::iso_value;
using test::refusal_of_iso;
using test::utc_iso;

// 2021-03-04T05:06:07Z: seconds since 1970 as `date -u -d` gives them, then ticks since 1601.
constexpr std::uint64_t march_4 = (1614834367ULL + 11644473600ULL) * 10'000'000;
constexpr std::uint64_t ticks_per_ms = 10'000;
constexpr std::uint64_t ticks_per_hour = 36'000'000'000;
constexpr const char* mismatch = "mismatch ISO-8601 format";

TEST(DatetimeParse, utc_text_is_taken_with_either_separator) {
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07Z"), march_4);
    EXPECT_EQ(iso_value(L"2021-03-04 05:06:07Z"), march_4);
    EXPECT_EQ(iso_value(L"2021-3-4T5:6:7Z"), march_4);
}

TEST(DatetimeParse, digits_after_the_point_are_milliseconds_as_they_stand) {
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07.5Z"), march_4 + 5 * ticks_per_ms);
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07.50Z"), march_4 + 50 * ticks_per_ms);
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07.500Z"), march_4 + 500 * ticks_per_ms);
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07.005+00:00"), march_4 + 5 * ticks_per_ms);
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07.009Z"), march_4 + 9 * ticks_per_ms);
}

TEST(DatetimeParse, offset_is_taken_off) {
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07+02:00"), march_4 - 2 * ticks_per_hour);
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07-05:30"), march_4 + 5 * ticks_per_hour + ticks_per_hour / 2);
    EXPECT_EQ(iso_value(L"2021-03-04 05:06:07.5-5:3"),
              march_4 + 5 * ticks_per_hour + ticks_per_hour / 20 + 5 * ticks_per_ms);
    EXPECT_EQ(utc_iso(iso_value(L"2021-03-04T05:06:07+02:00")), L"2021-03-04T03:06:07Z");
    // Nothing says that an offset must be one that a zone has.
    EXPECT_EQ(iso_value(L"2021-03-04T05:06:07-99:99"), march_4 + 99 * ticks_per_hour + 99 * 600'000'000ULL);
}

TEST(DatetimeParse, text_of_another_shape_is_refused) {
    for (const wchar_t* text : {L"",
                                L" ",
                                L"Z",
                                L"2021-03-04",
                                L"2021-03-04T05:06Z",
                                L"2021-03-04T05:06:07+0200",
                                L"2021-03-04T05:06:07+02",
                                L"2021-03-04T05:06:07z",
                                L"2021-03-04T05:06:07.1234Z",
                                L"2021-03-04T05:06:07.Z",
                                L"21-03-04T05:06:07Z",
                                L"12021-03-04T05:06:07Z",
                                L"2021-003-04T05:06:07Z",
                                L"2021-03-04t05:06:07Z",
                                L"2021-03-04  05:06:07Z",
                                L" 2021-03-04T05:06:07Z",
                                L"2021-03-04T05:06:07Z ",
                                L"2021-03-04T05:06:07Z\n",
                                L"2021-03-04T05:06:07Z+01:00",
                                L"2021/03/04T05:06:07Z",
                                L"-021-03-04T05:06:07Z",
                                L"Thu, 04 Mar 2021 05:06:07 GMT",
                                L"2021-03-04T05:06:07\x0661Z"}) {
        EXPECT_EQ(refusal_of_iso(text), mismatch) << testing::PrintToString(std::wstring(text));
    }
    EXPECT_EQ(refusal_of_iso(std::wstring(L"2021-03-04T05:06:07Z\0", 21)), mismatch);
}

TEST(DatetimeParse, date_that_does_not_exist_is_refused) {
    for (const wchar_t* text :
         {L"2021-13-04T05:06:07Z", L"2021-00-04T05:06:07Z", L"2021-02-31T05:06:07Z", L"2021-03-00T05:06:07Z",
          L"2021-03-04T25:06:07Z", L"2021-03-04T24:00:00Z", L"2021-03-04T05:60:07Z", L"2021-03-04T05:06:60Z",
          L"2021-02-29T05:06:07Z", L"1900-02-29T05:06:07Z", L"2021-13-04T05:06:07+01:00",
          L"2021-13-04T05:06:07"}) {
        EXPECT_EQ(refusal_of_iso(text), mismatch) << testing::PrintToString(std::wstring(text));
    }
}

TEST(DatetimeParse, leap_days_exist_in_leap_years) {
    EXPECT_EQ(utc_iso(iso_value(L"2020-02-29T00:00:00Z")), L"2020-02-29T00:00:00Z");
    EXPECT_EQ(utc_iso(iso_value(L"2000-02-29T23:59:59Z")), L"2000-02-29T23:59:59Z");
    EXPECT_EQ(iso_value(L"2020-03-01T00:00:00Z") - iso_value(L"2020-02-29T00:00:00Z"), 24 * ticks_per_hour);
}

TEST(DatetimeParse, years_run_from_1601_to_9999) {
    EXPECT_EQ(refusal_of_iso(L"1600-12-31T23:59:59Z"), mismatch);
    EXPECT_EQ(refusal_of_iso(L"0000-01-01T00:00:00Z"), mismatch);
    EXPECT_EQ(iso_value(L"1601-01-01T00:00:00Z"), 0U);
    EXPECT_EQ(iso_value(L"1601-01-01T00:00:01Z"), 10'000'000U);
    EXPECT_EQ(iso_value(L"9999-12-31T23:59:59.999Z"), 2650467743999990000ULL);
    EXPECT_EQ(utc_iso(2650467743999990000ULL), L"9999-12-31T23:59:59Z");
}

TEST(DatetimeParse, offset_that_leads_before_1601_is_refused) {
    EXPECT_EQ(refusal_of_iso(L"1601-01-01T00:00:00+00:01"), mismatch);
    EXPECT_EQ(iso_value(L"1601-01-01T00:01:00+00:01"), 0U);
    EXPECT_EQ(iso_value(L"1601-01-01T00:00:00-00:01"), 600'000'000U);
}

TEST(DatetimeParse, long_text_is_refused_at_once) {
    for (const std::size_t length : {31U, 1000U, 10'000U, 1'000'000U}) {
        EXPECT_EQ(refusal_of_iso(std::wstring(length, L'0')), mismatch);
        EXPECT_EQ(refusal_of_iso(L"2021-03-04T05:06:07Z" + std::wstring(length, L'Z')), mismatch);
    }
}

TEST(DatetimeParse, refused_text_leaves_the_value_as_it_was) {
    datetime_rfc1123 time(march_4);
    for (const wchar_t* text : {L"", L"2021-13-04T05:06:07Z", L"2021-13-04T05:06:07+01:00", L"nonsense"}) {
        EXPECT_THROW(time.datetime::parse(text), exception);
        EXPECT_EQ(time.value, march_4);
    }
}

TEST(DatetimeFormat, utc_text_is_written_with_and_without_milliseconds) {
    const datetime_rfc1123 time(march_4 + 9 * ticks_per_ms + 9999);
    EXPECT_EQ(time.datetime::format(false, false), L"2021-03-04T05:06:07Z");
    EXPECT_EQ(time.datetime::format(false, true), L"2021-03-04T05:06:07.009Z");
    EXPECT_EQ(time.datetime::format(false), L"2021-03-04T05:06:07Z");
}

TEST(DatetimeFormat, no_time_is_an_empty_text) {
    const datetime_rfc1123 time;
    for (const bool local : {false, true}) {
        for (const bool milliseconds : {false, true}) {
            EXPECT_EQ(time.datetime::format(local, milliseconds), L"");
        }
    }
}

TEST(DatetimeFormat, values_that_are_no_file_time_are_an_empty_text) {
    for (const std::uint64_t value : {0x8000000000000000ULL, 0xFFFFFFFFFFFFFFFFULL}) {
        EXPECT_EQ(datetime_rfc1123(value).datetime::format(false, true), L"");
        EXPECT_EQ(datetime_rfc1123(value).datetime::format(true, true), L"");
    }
}

TEST(DatetimeFormat, largest_file_time_has_a_year_of_five_digits) {
    EXPECT_EQ(datetime_rfc1123(0x7FFFFFFFFFFFFFFFULL).datetime::format(false, true),
              L"30828-09-14T02:48:05.477Z");
    EXPECT_EQ(utc_iso(1), L"1601-01-01T00:00:00Z");
}

TEST(DatetimeFormat, text_that_is_written_can_be_read) {
    for (std::uint64_t value = ticks_per_ms; value < 2650467743999990000ULL;
         value += 2650467743999990000ULL / 997 / ticks_per_ms * ticks_per_ms) {
        EXPECT_EQ(iso_value(datetime_rfc1123(value).datetime::format(false, true)), value);
    }
}

}  // namespace
}  // namespace ov::time
