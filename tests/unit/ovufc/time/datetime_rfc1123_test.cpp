#include <gtest/gtest.h>

#include "ovufc/time/datetime.h"
#include "tests/unit/ovufc/time/time_texts.h"

namespace ov::time {
namespace {

using test::iso_value;
using test::refusal_of_rfc1123;
using test::rfc1123_value;
using test::utc_iso;

constexpr const char* mismatch = "mismatch RFC-1123 format";

std::wstring utc(const std::wstring& text) {
    return utc_iso(rfc1123_value(text));
}

/// What local text is worth is told by the other dialect; that one is checked zone by zone elsewhere.
std::wstring same_as_local(const wchar_t* iso) {
    return utc_iso(iso_value(iso));
}

TEST(Rfc1123Parse, gmt_is_utc) {
    EXPECT_EQ(utc(L"Thu, 04 Mar 2021 05:06:07 GMT"), L"2021-03-04T05:06:07Z");
    EXPECT_EQ(utc(L"Thu, 4 Mar 2021 5:6:7 GMT"), L"2021-03-04T05:06:07Z");
}

TEST(Rfc1123Parse, all_months_and_days_are_known) {
    const wchar_t* months[] = {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun",
                               L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"};
    const wchar_t* numbers[] = {L"01", L"02", L"03", L"04", L"05", L"06",
                                L"07", L"08", L"09", L"10", L"11", L"12"};
    const wchar_t* days[] = {L"Sun", L"Mon", L"Tue", L"Wed", L"Thu", L"Fri", L"Sat"};
    for (int month = 0; month < 12; ++month) {
        // The day's name is read and then not looked at.
        for (const wchar_t* day : days) {
            EXPECT_EQ(utc(std::wstring(day) + L", 15 " + months[month] + L" 2021 00:00:00 GMT"),
                      std::wstring(L"2021-") + numbers[month] + L"-15T00:00:00Z");
        }
    }
}

TEST(Rfc1123Parse, without_gmt_the_time_is_local) {
    const std::wstring afternoon = same_as_local(L"2021-03-04T17:06:07");
    const std::wstring morning = same_as_local(L"2021-03-04T05:06:07");
    EXPECT_EQ(utc(L"Thu, 04 Mar 2021 05:06:07"), morning);
    EXPECT_EQ(utc(L"Thu, 04 Mar 2021 05:06:07 AM"), morning);
    EXPECT_EQ(utc(L"Thu, 04 Mar 2021 05:06:07 PM"), afternoon);
    EXPECT_EQ(utc(L"3/4/2021 5:06:07"), morning);
    EXPECT_EQ(utc(L"3/4/2021 5:06:07 AM"), morning);
    EXPECT_EQ(utc(L"3/4/2021 5:06:07 PM"), afternoon);
    EXPECT_EQ(utc(L"03/04/2021 17:06:07 PM"), afternoon);
}

TEST(Rfc1123Parse, us_date_with_gmt_is_utc) {
    EXPECT_EQ(utc(L"3/4/2021 5:06:07 GMT"), L"2021-03-04T05:06:07Z");
    EXPECT_EQ(utc(L"12/31/1999 23:59:59 GMT"), L"1999-12-31T23:59:59Z");
}

TEST(Rfc1123Parse, noon_and_midnight_are_taken_as_they_stand) {
    EXPECT_EQ(utc(L"3/4/2021 12:30:00 AM"), same_as_local(L"2021-03-04T12:30:00"));
    EXPECT_EQ(utc(L"3/4/2021 12:30:00 PM"), same_as_local(L"2021-03-04T12:30:00"));
    EXPECT_EQ(utc(L"3/4/2021 0:30:00 PM"), same_as_local(L"2021-03-04T12:30:00"));
    EXPECT_EQ(utc(L"3/4/2021 0:30:00 AM"), same_as_local(L"2021-03-04T00:30:00"));
}

TEST(Rfc1123Parse, day_name_is_needed_and_has_three_letters) {
    // The pattern lets both through; the reading does not.
    EXPECT_EQ(refusal_of_rfc1123(L"4 Mar 2021 05:06:07 GMT"), mismatch);
    EXPECT_EQ(refusal_of_rfc1123(L"04 Mar 2021 05:06:07"), mismatch);
    EXPECT_EQ(refusal_of_rfc1123(L"Thur, 04 Mar 2021 05:06:07 GMT"), mismatch);
}

TEST(Rfc1123Parse, text_of_another_shape_is_refused) {
    for (const wchar_t* text : {L"",
                                L"Thu",
                                L"Thu, 04 Mar 2021",
                                L"thu, 04 mar 2021 05:06:07 gmt",
                                L"Thu, 04 Mar 2021 05:06:07 UTC",
                                L"Thu, 04 Mar 21 05:06:07 GMT",
                                L"Thu,04 Mar 2021 05:06:07 GMT",
                                L"Thu, 04 Mrz 2021 05:06:07 GMT",
                                L"Thursday, 04 Mar 2021 05:06:07 GMT",
                                L"Thu, 04 Mar 2021 05:06:07GMT",
                                L"Thu, 04 Mar 2021 05:06:07 PMPM",
                                L"3-4-2021 5:06:07",
                                L"3/4/21 5:06:07",
                                L"3/4/2021",
                                L"3/4/2021 5:06:07 UTC",
                                L"3/4/2021 5:06:07  PM",
                                L"2021-03-04T05:06:07Z",
                                L"%s%s%s%n",
                                L"Thu, 04 Mar 2021 05:06:07 GMT\n",
                                L" Thu, 04 Mar 2021 05:06:07 GMT"}) {
        EXPECT_EQ(refusal_of_rfc1123(text), mismatch) << testing::PrintToString(std::wstring(text));
    }
}

TEST(Rfc1123Parse, date_that_does_not_exist_is_refused) {
    for (const wchar_t* text : {L"Thu, 31 Feb 2021 05:06:07 GMT", L"Thu, 00 Mar 2021 05:06:07 GMT",
                                L"Thu, 04 Mar 2021 25:06:07 GMT", L"Thu, 04 Mar 1600 05:06:07 GMT",
                                L"13/4/2021 5:06:07", L"0/4/2021 5:06:07", L"2/29/2021 5:06:07 PM",
                                L"3/4/2021 24:00:00 AM", L"3/4/2021 5:60:07", L"3/4/0000 5:06:07 GMT"}) {
        EXPECT_EQ(refusal_of_rfc1123(text), mismatch) << testing::PrintToString(std::wstring(text));
    }
    EXPECT_EQ(utc(L"2/29/2020 5:06:07 GMT"), L"2020-02-29T05:06:07Z");
}

TEST(Rfc1123Parse, long_text_is_refused_at_once) {
    for (const std::size_t length : {31U, 10'000U, 1'000'000U}) {
        EXPECT_EQ(refusal_of_rfc1123(std::wstring(length, L'1')), mismatch);
        EXPECT_EQ(refusal_of_rfc1123(L"Thu, 04 Mar 2021 05:06:07 " + std::wstring(length, L'A')), mismatch);
        EXPECT_EQ(refusal_of_rfc1123(std::wstring(length, L'/') + L"3/4/2021 5:06:07"), mismatch);
    }
}

TEST(Rfc1123Parse, refused_text_leaves_the_value_as_it_was) {
    datetime_rfc1123 time(42);
    for (const wchar_t* text : {L"", L"Thu, 31 Feb 2021 05:06:07 GMT", L"4 Mar 2021 05:06:07 GMT"}) {
        EXPECT_THROW(time.parse(text), exception);
        EXPECT_EQ(time.value, 42U);
    }
}

TEST(Rfc1123Parse, is_what_parsing_through_the_base_means) {
    datetime_rfc1123 time;
    datetime& base = time;
    base.parse(L"Thu, 04 Mar 2021 05:06:07 GMT");
    EXPECT_EQ(utc_iso(time.value), L"2021-03-04T05:06:07Z");
    EXPECT_EQ(base.format(false), L"Thu, 04 Mar 2021 05:06:07 GMT");
    EXPECT_EQ(base.format(false, true), L"Thu, 04 Mar 2021 05:06:07 GMT");
}

TEST(Rfc1123Format, utc_text_names_day_and_month) {
    const auto text = [](const wchar_t* iso) { return datetime_rfc1123(iso_value(iso)).format(false); };
    // Days of the week as `date -u +%a` gives them.
    EXPECT_EQ(text(L"2021-03-04T05:06:07Z"), L"Thu, 04 Mar 2021 05:06:07 GMT");
    EXPECT_EQ(text(L"2021-02-28T23:59:59.999Z"), L"Sun, 28 Feb 2021 23:59:59 GMT");
    EXPECT_EQ(text(L"1999-12-31T00:00:00Z"), L"Fri, 31 Dec 1999 00:00:00 GMT");
    EXPECT_EQ(text(L"2000-01-01T12:00:00Z"), L"Sat, 01 Jan 2000 12:00:00 GMT");
}

TEST(Rfc1123Format, no_time_is_an_empty_text) {
    for (const bool local : {false, true}) {
        EXPECT_EQ(datetime_rfc1123().format(local), L"");
        EXPECT_EQ(datetime_rfc1123(0x8000000000000000ULL).format(local), L"");
        EXPECT_EQ(datetime_rfc1123().display(local, true), L"");
        EXPECT_EQ(datetime_rfc1123().displayDate(local, false), L"");
        EXPECT_EQ(datetime_rfc1123(~0ULL).display(local, true), L"");
        EXPECT_EQ(datetime_rfc1123(~0ULL).displayDate(local, false), L"");
    }
}

TEST(Rfc1123Format, largest_file_time_is_written) {
    EXPECT_EQ(datetime_rfc1123(0x7FFFFFFFFFFFFFFFULL).format(false), L"Thu, 14 Sep 30828 02:48:05 GMT");
}

TEST(Rfc1123Format, text_that_is_written_can_be_read) {
    for (std::uint64_t second = 1; second < 265046774399ULL; second += 265046774399ULL / 499) {
        const datetime_rfc1123 time(second * 10'000'000);
        EXPECT_EQ(rfc1123_value(time.format(false)), time.value);
    }
}

}  // namespace
}  // namespace ov::time
