#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ovufc/time/datetime.h"
#include "tests/unit/ovufc/time/time_texts.h"

// What depends on the time zone and on the user's locale. The program is run once for each of several zones
// and locales; what is to come out is worked out beside it, by other means, and handed over in the
// environment.
namespace ov::time {
namespace {

using test::iso_value;

constexpr std::int64_t ticks_per_minute = 600'000'000;

std::wstring variable(const wchar_t* name) {
    wchar_t text[4096] = L"";
    const DWORD length = GetEnvironmentVariableW(name, text, 4096);
    EXPECT_GT(length, 0U) << "run by ctest, which sets the surroundings";
    return {text, length};
}

class Zone : public testing::Test {
  protected:
    void SetUp() override {
        now_minutes = std::stoi(variable(L"ORV_ZONE_NOW"));
        std::wistringstream pairs(variable(L"ORV_ZONE_TIMES"));
        for (std::wstring pair; pairs >> pair;) {
            const auto equals = pair.find(L'=');
            times.emplace_back(pair.substr(0, equals), pair.substr(equals + 1));
        }
        ASSERT_GE(times.size(), 16U);
    }

    std::wstring now_text() const {
        wchar_t text[16];
        const int minutes = std::abs(now_minutes);
        _snwprintf(text, 16, L"%c%02d:%02d", now_minutes < 0 ? L'-' : L'+', minutes / 60, minutes % 60);
        return text;
    }

    /// Minutes east of UTC at this moment.
    int now_minutes = 0;
    /// An instant in UTC, ending in "Z", and the local time that goes with it.
    std::vector<std::pair<std::wstring, std::wstring>> times;
};

TEST_F(Zone, current_offset_is_that_of_this_moment) {
    EXPECT_EQ(current_time_zone_offset().bias, -now_minutes);
}

TEST_F(Zone, iso_text_has_the_local_time_of_its_date_and_the_offset_of_this_moment) {
    for (const auto& [utc, local] : times) {
        const datetime_rfc1123 time(iso_value(utc));
        EXPECT_EQ(time.datetime::format(true, false), local + now_text());
        EXPECT_EQ(time.datetime::format(true, true), local + L".000" + now_text());
    }
}

TEST_F(Zone, rfc_1123_text_has_the_local_time_of_its_date) {
    for (const auto& [utc, local] : times) {
        const std::wstring text = datetime_rfc1123(iso_value(utc)).format(true);
        // The date and all but the hour as if the local time were UTC.
        const std::wstring as_utc = datetime_rfc1123(iso_value(local + L"Z")).format(false);
        EXPECT_EQ(text.substr(0, 17), as_utc.substr(0, 17));
        EXPECT_EQ(text.substr(19, 6), as_utc.substr(19, 6));

        const int hour = std::stoi(local.substr(11, 2));
        const int shown = hour > 12 ? hour - 12 : hour;
        EXPECT_EQ(std::stoi(text.substr(17, 2)), shown) << hour;
        EXPECT_EQ(text.substr(26), hour < 12 ? L"AM" : L"PM") << hour;
    }
}

TEST_F(Zone, display_has_the_local_time_of_its_date) {
    for (const auto& [utc, local] : times) {
        const datetime_rfc1123 time(iso_value(utc));
        const datetime_rfc1123 as_utc(iso_value(local + L"Z"));
        for (const bool long_date : {false, true}) {
            EXPECT_EQ(time.display(true, long_date), as_utc.display(false, long_date));
            EXPECT_EQ(time.displayDate(true, long_date), as_utc.displayDate(false, long_date));
            EXPECT_FALSE(time.display(true, long_date).empty());
        }
    }
}

TEST_F(Zone, local_text_is_read_with_the_offset_of_this_moment) {
    for (const auto& [utc, local] : times) {
        const std::uint64_t expected =
            iso_value(local + L"Z") - static_cast<std::uint64_t>(now_minutes * ticks_per_minute);
        EXPECT_EQ(iso_value(local), expected);
        // "Thu, 04 Mar 2021 05:06:07", local for want of "GMT".
        const std::wstring text = datetime_rfc1123(iso_value(local + L"Z")).format(false);
        EXPECT_EQ(test::rfc1123_value(text.substr(0, text.size() - 4)), expected);
    }
}

TEST_F(Zone, local_text_before_1601_in_utc_is_refused) {
    const std::string answer = test::refusal_of_iso(L"1601-01-01T00:00:01");
    EXPECT_EQ(answer, now_minutes > 0 ? "mismatch ISO-8601 format" : "accepted");
}

TEST_F(Zone, earliest_and_latest_times_are_formatted_or_empty) {
    for (const std::uint64_t value : {1ULL, 0x7FFFFFFFFFFFFFFFULL}) {
        const std::wstring text = datetime_rfc1123(value).datetime::format(true, false);
        EXPECT_TRUE(text.empty() || text.size() >= 25) << testing::PrintToString(text);
    }
}

TEST(Locale, dates_read_as_the_user_writes_them) {
    const datetime_rfc1123 time(iso_value(L"2021-07-15T16:05:09Z"));
    EXPECT_EQ(time.display(false, true), variable(L"ORV_LOCALE_LONG"));
    EXPECT_EQ(time.display(false, false), variable(L"ORV_LOCALE_SHORT"));
}

}  // namespace
}  // namespace ov::time
