#include "companions/orvdialog/chronels/chronel_columns.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "companions/orvdialog/texts/message_numbers.h"
#include "testkit/imports/import_patch.h"

namespace ov::dialog {
namespace {

enum column { saved, size, kind, file_name };

class ChronelColumns : public testing::Test {
  protected:
    std::wstring cell(const std::string& record, column wanted) {
        text = "[" + record + "]";
        const auto list = chronel_list::read(text);
        EXPECT_TRUE(list);
        EXPECT_EQ(list->size(), 1U);
        return chronel_columns[wanted].cell(*list, 0, texts);
    }

    std::string text;
    const dialog_texts texts{L"C:\\no such library.dll"};
};

// 17 January 2024, 21:20 UTC
constexpr const char* sample =
    R"({"fileName":"C:\\Album\\sea.txt","cloneFileName":"1","type":"manual","time":133500000000000000,"size":2048})";

TEST_F(ChronelColumns, cells_tell_the_record) {
    EXPECT_THAT(cell(sample, saved), testing::HasSubstr(L"2024"));
    EXPECT_THAT(cell(sample, size), testing::HasSubstr(L"2"));
    EXPECT_EQ(cell(sample, kind), L"manual");
    EXPECT_EQ(cell(sample, file_name), L"sea.txt");
}

TEST_F(ChronelColumns, kinds_of_the_product_are_in_the_users_language) {
    for (const auto& [type, number] : {std::pair("first copy", message_numbers::kind_first_copy),
                                       std::pair("restore point", message_numbers::kind_restore_point),
                                       std::pair("before a restore", message_numbers::kind_before_restore)}) {
        const std::string record =
            R"({"fileName":"a","cloneFileName":"1","type":")" + std::string(type) + "\"}";
        EXPECT_EQ(cell(record, kind), texts.text(number));
    }
}

TEST_F(ChronelColumns, what_is_not_told_is_empty) {
    constexpr const char* record = R"({"fileName":"","cloneFileName":"","type":""})";
    for (const column wanted : {saved, size, kind, file_name}) {
        EXPECT_EQ(cell(record, wanted), L"");
    }
}

TEST_F(ChronelColumns, numbers_beyond_the_systems_are_empty) {
    constexpr const char* record =
        R"({"fileName":"a","cloneFileName":"1","type":"b","time":18446744073709551615,"size":18446744073709551615})";
    EXPECT_EQ(cell(record, saved), L"");
    EXPECT_EQ(cell(record, size), L"");
}

WORD asked_year = 0;

/// A zone that was four hours ahead in 2024 and nothing else is known of.
BOOL WINAPI rules_of_2024(USHORT year, PDYNAMIC_TIME_ZONE_INFORMATION, LPTIME_ZONE_INFORMATION rules) {
    asked_year = year;
    *rules = {};
    rules->Bias = year == 2024 ? -240 : 0;
    return TRUE;
}

TEST_F(ChronelColumns, saved_is_the_time_by_the_rules_of_its_year) {
    const test::import_patch<decltype(GetTimeZoneInformationForYear)> patch(
        GetModuleHandleW(nullptr), "kernel32.dll;api-ms-*", "GetTimeZoneInformationForYear", rules_of_2024);
    EXPECT_THAT(cell(sample, saved), testing::HasSubstr(L"18"));  // 18 January, 1:20
    EXPECT_EQ(asked_year, 2024);
    constexpr const char* of_2023 =
        R"({"fileName":"a","cloneFileName":"1","type":"b","time":133184640000000000})";  // 16 January 2023,
                                                                                         // 0:00
    EXPECT_THAT(cell(of_2023, saved), testing::HasSubstr(L"17"));
    EXPECT_EQ(asked_year, 2023);
}

}  // namespace
}  // namespace ov::dialog
