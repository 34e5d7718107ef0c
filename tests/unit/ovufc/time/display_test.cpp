#include <gtest/gtest.h>
#include <windows.h>

#include <cwchar>
#include <optional>

#include "ovufc/time/datetime.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/ovufc/time/time_texts.h"

namespace ov::time {
namespace {

using date_function = int WINAPI(LPCWSTR, DWORD, const SYSTEMTIME*, LPCWSTR, LPWSTR, int, LPCWSTR);
using time_function = int WINAPI(LPCWSTR, DWORD, const SYSTEMTIME*, LPCWSTR, LPWSTR, int);

/// Stands between display and the system, to see what is asked and to give other answers.
struct locale_double {
    const wchar_t* date = L"DATE";
    const wchar_t* time = L"TIME";
    DWORD date_flags = 0;
    DWORD time_flags = ~0U;
    int size_chars = 0;
    bool user_default = false;
    bool plain = false;
    SYSTEMTIME shown{};
};
locale_double seen;

int give(const wchar_t* text, LPWSTR buffer, int size_chars) {
    if (text == nullptr) {
        return 0;
    }
    wcsncpy(buffer, text, static_cast<std::size_t>(size_chars));
    return static_cast<int>(wcslen(text)) + 1;
}

int WINAPI date_format(LPCWSTR locale, DWORD flags, const SYSTEMTIME* time, LPCWSTR format, LPWSTR buffer,
                       int size_chars, LPCWSTR calendar) {
    seen.date_flags = flags;
    seen.size_chars = size_chars;
    seen.user_default = locale == LOCALE_NAME_USER_DEFAULT;
    seen.plain = format == nullptr && calendar == nullptr;
    seen.shown = *time;
    return give(seen.date, buffer, size_chars);
}

int WINAPI time_format(LPCWSTR locale, DWORD flags, const SYSTEMTIME*, LPCWSTR format, LPWSTR buffer,
                       int size_chars) {
    seen.time_flags = flags;
    seen.user_default = seen.user_default && locale == LOCALE_NAME_USER_DEFAULT;
    seen.plain = seen.plain && format == nullptr && size_chars == seen.size_chars;
    return give(seen.time, buffer, size_chars);
}

class Display : public testing::Test {
  protected:
    void SetUp() override { seen = {}; }

    const datetime_rfc1123 noon{test::iso_value(L"2021-07-15T12:00:00Z")};
    test::import_patch<date_function> date_patch{GetModuleHandleW(nullptr), "kernel32.dll", "GetDateFormatEx",
                                                 date_format};
    test::import_patch<time_function> time_patch{GetModuleHandleW(nullptr), "kernel32.dll", "GetTimeFormatEx",
                                                 time_format};
};

TEST_F(Display, date_and_time_have_one_blank_between_them) {
    EXPECT_EQ(noon.display(false, false), L"DATE TIME");
    EXPECT_EQ(noon.displayDate(false, false), L"DATE");
}

TEST_F(Display, the_users_locale_is_asked_for_a_laid_out_date) {
    (void)noon.display(false, false);
    EXPECT_EQ(seen.date_flags, 0x41U);
    EXPECT_EQ(seen.time_flags, 0U);
    EXPECT_EQ(seen.size_chars, 260);
    EXPECT_TRUE(seen.user_default);
    EXPECT_TRUE(seen.plain);
    (void)noon.display(false, true);
    EXPECT_EQ(seen.date_flags, 0x42U);
    (void)noon.displayDate(false, true);
    EXPECT_EQ(seen.date_flags, 0x42U);
    EXPECT_EQ(seen.shown.wYear, 2021);
    EXPECT_EQ(seen.shown.wMonth, 7);
    EXPECT_EQ(seen.shown.wHour, 12);
}

TEST_F(Display, what_the_locale_cannot_give_is_left_out) {
    seen.time = nullptr;
    EXPECT_EQ(noon.display(false, false), L"DATE");
    seen.date = nullptr;
    EXPECT_EQ(noon.display(false, false), L"");
    EXPECT_EQ(noon.displayDate(false, false), L"");
    seen.time = L"TIME";
    EXPECT_EQ(noon.display(false, false), L"TIME");
}

const wchar_t* patched_locale = nullptr;
date_function* real_date = nullptr;
time_function* real_time = nullptr;

int WINAPI date_in_locale(LPCWSTR, DWORD flags, const SYSTEMTIME* time, LPCWSTR format, LPWSTR buffer,
                          int size_chars, LPCWSTR calendar) {
    return real_date(patched_locale, flags, time, format, buffer, size_chars, calendar);
}
int WINAPI time_in_locale(LPCWSTR, DWORD flags, const SYSTEMTIME* time, LPCWSTR format, LPWSTR buffer,
                          int size_chars) {
    return real_time(patched_locale, flags, time, format, buffer, size_chars);
}

TEST(DisplayInZone, time_that_the_system_cannot_take_to_the_zone_is_empty) {
    const test::import_patch<decltype(SystemTimeToTzSpecificLocalTime)> patch(
        GetModuleHandleW(nullptr), "kernel32.dll", "SystemTimeToTzSpecificLocalTime",
        [](const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME*) -> BOOL { return FALSE; });
    const datetime_rfc1123 time(test::iso_value(L"2021-07-15T16:05:09Z"));
    EXPECT_EQ(time.display(true, true), L"");
    EXPECT_NE(time.display(false, true), L"");
}

TEST(DisplayInLocale, date_reads_as_people_there_write_it) {
    real_date = GetDateFormatEx;
    real_time = GetTimeFormatEx;
    test::import_patch<date_function> date_patch(GetModuleHandleW(nullptr), "kernel32.dll", "GetDateFormatEx",
                                                 date_in_locale);
    test::import_patch<time_function> time_patch(GetModuleHandleW(nullptr), "kernel32.dll", "GetTimeFormatEx",
                                                 time_in_locale);
    real_date = date_patch.original();
    real_time = time_patch.original();
    const datetime_rfc1123 time(test::iso_value(L"2021-07-15T16:05:09Z"));
    const struct {
        const wchar_t* locale;
        const wchar_t* text;
    } rows[] = {{L"en-US", L"Thursday, July 15, 2021 4:05:09 PM"},
                {L"de-DE", L"Donnerstag, 15. Juli 2021 16:05:09"},
                {L"ja-JP", L"2021\u5E747\u670815\u65E5\u6728\u66DC\u65E5 16:05:09"}};
    for (const auto& row : rows) {
        patched_locale = row.locale;
        EXPECT_EQ(time.display(false, true), row.text);
    }
    patched_locale = L"en-US";
    EXPECT_EQ(time.display(false, false), L"7/15/2021 4:05:09 PM");
    EXPECT_EQ(time.displayDate(false, false), L"7/15/2021");
}

}  // namespace
}  // namespace ov::time
