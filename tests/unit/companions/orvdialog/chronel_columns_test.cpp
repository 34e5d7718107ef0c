#include "companions/orvdialog/chronel_columns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ov::dialog {
namespace {

chronel sample() {
    chronel item;
    item.file_name = L"C:\\Album\\sea.txt";
    item.type = L"manual";
    item.time = 133'500'000'000'000'000;  // 17 January 2024, 21:20 UTC
    item.size_bytes = 2048;
    return item;
}

TEST(ChronelColumns, cells_tellTheRecord) {
    const chronel item = sample();
    EXPECT_THAT(chronel_cell(item, 0), testing::HasSubstr(L"2024"));
    EXPECT_THAT(chronel_cell(item, 1), testing::HasSubstr(L"2"));
    EXPECT_EQ(chronel_cell(item, 2), L"manual");
    EXPECT_EQ(chronel_cell(item, 3), L"sea.txt");
}

TEST(ChronelColumns, whatIsNotTold_isEmpty) {
    const chronel item;
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(chronel_cell(item, column), L"");
    }
}

TEST(ChronelColumns, columnsThatAreNotThere_areEmpty) {
    EXPECT_EQ(chronel_cell(sample(), -1), L"");
    EXPECT_EQ(chronel_cell(sample(), 4), L"");
}

TEST(ChronelColumns, numbersBeyondTheSystems_areEmpty) {
    chronel item = sample();
    item.time = UINT64_MAX;
    item.size_bytes = UINT64_MAX;
    EXPECT_EQ(chronel_cell(item, 0), L"");
    EXPECT_EQ(chronel_cell(item, 1), L"");
}

}  // namespace
}  // namespace ov::dialog
