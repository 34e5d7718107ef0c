// The times that the entries' commands show are the user's own, in a zone far from UTC.

#include <gtest/gtest.h>

#include <array>

#include "module/state/class_ids.h"
#include "testkit/checks/message_box_script.h"
#include "testkit/imports/import_patch.h"
#include "tests/module/menus/entry_menus/consent.h"
#include "tests/module/menus/entry_menus/entry_fixture.h"

namespace ov::test {
namespace {

// 2024-01-17 21:20:00 UTC; 18 January in the zone below.
constexpr const char* some_time = "133500000000000000";
constexpr SYSTEMTIME in_the_zone{2024, 1, 4, 18, 11, 5, 0, 0};

// The zone of the Chatham Islands in January, whatever zone the prefix is in: 13 hours and 45 minutes ahead.
BOOL WINAPI to_far_east(const TIME_ZONE_INFORMATION* zone, const SYSTEMTIME* utc, SYSTEMTIME* local) {
    EXPECT_EQ(zone, nullptr) << "the current zone";
    constexpr std::uint64_t ahead = (13 * 60 + 45) * 600'000'000ULL;
    FILETIME time{};
    SystemTimeToFileTime(utc, &time);
    const std::uint64_t shifted =
        ((static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime) + ahead;
    time = {static_cast<DWORD>(shifted), static_cast<DWORD>(shifted >> 32)};
    return FileTimeToSystemTime(&time, local);
}

// In the long form, written by the system alone.
std::wstring shown(const SYSTEMTIME& time) {
    std::array<wchar_t, 260> date{};
    std::array<wchar_t, 260> time_of_day{};
    GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_LONGDATE | DATE_AUTOLAYOUT, &time, nullptr, date.data(),
                    static_cast<int>(date.size()), nullptr);
    GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &time, nullptr, time_of_day.data(),
                    static_cast<int>(time_of_day.size()));
    return std::wstring(date.data()) + L" " + time_of_day.data();
}

class LocalTime : public entry_fixture {
  private:
    import_patch<decltype(SystemTimeToTzSpecificLocalTime)> zone_{
        module_.handle(), "kernel32.dll", "SystemTimeToTzSpecificLocalTime", to_far_east};
};

TEST_F(LocalTime, addons_tells_the_timestamp_in_the_users_zone) {
    reply(service_call::get_last_timestamp,
          std::string(R"({"data":{"lastTimestamp":)") + some_time + R"(},"statusCode":-2})");
    const auto menu = entry_menu(class_ids::addons);
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 2U);
    EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40018, shown(in_the_zone)));
}

TEST_F(LocalTime, restore_asks_with_the_time_in_the_users_zone) {
    reply(service_call::get_restore_points, std::string(R"({"data":{"restorePoints":[{"createdOn":)") +
                                                some_time + R"(,"sequenceNumber":7}]},"statusCode":0})");
    const consent granted(module_.handle());
    const auto menu = entry_menu(class_ids::one_click_restore);
    message_box_script boxes(module_.handle(), {IDOK, IDCANCEL});
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 2U);
    EXPECT_EQ(boxes.shown()[0].text, message_texts::of(0x40015, shown(in_the_zone)));
    EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40016, shown(in_the_zone)));
}

}  // namespace
}  // namespace ov::test
