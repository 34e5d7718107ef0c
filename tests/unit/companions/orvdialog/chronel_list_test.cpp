#include "companions/orvdialog/chronel_list.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace ov::dialog {
namespace {

constexpr const char* one_record =
    R"([{"type":"manual","fileName":"sea.txt","cloneFileName":"7","time":5,"size":12,"more":[1,{"x":null}]}])";

TEST(ChronelList, record_isReadWithItsWholeText) {
    const auto list = read_chronel_list(one_record);
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    const chronel& item = list->front();
    EXPECT_EQ(
        item.identifier,
        R"({"cloneFileName":"7","fileName":"sea.txt","more":[1,{"x":null}],"size":12,"time":5,"type":"manual"})");
    EXPECT_EQ(item.file_name, L"sea.txt");
    EXPECT_EQ(item.type, L"manual");
    EXPECT_EQ(item.time, 5U);
    EXPECT_EQ(item.size_bytes, 12U);
}

TEST(ChronelList, objectWithChronels_isAListToo) {
    const auto list =
        read_chronel_list(R"({"version":1,"others":[{"fileName":"x","cloneFileName":"x","type":"x"}],)"
                          R"("chronels":[{"fileName":"a","cloneFileName":"1","type":"b"}]})");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_EQ(list->front().file_name, L"a");
}

TEST(ChronelList, newest_comesFirstAndUnknownTimesLast) {
    const auto list =
        read_chronel_list(R"([{"fileName":"none","cloneFileName":"1","type":"b"},)"
                          R"({"fileName":"old","cloneFileName":"2","type":"b","time":1},)"
                          R"({"fileName":"new","cloneFileName":"3","type":"b","createdOn":9}])");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 3U);
    EXPECT_EQ(list->at(0).file_name, L"new");
    EXPECT_EQ(list->at(1).file_name, L"old");
    EXPECT_EQ(list->at(2).file_name, L"none");
}

TEST(ChronelList, membersOfOtherKinds_areShownAsTheyStand) {
    const auto list = read_chronel_list(R"([{"fileName":"\u00e4\ud83d\ude00","cloneFileName":null,"type":3,)"
                                        R"("time":-5,"size":"big"}])");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_EQ(list->front().file_name, L"\u00e4\U0001F600");
    EXPECT_EQ(list->front().type, L"3");
    EXPECT_FALSE(list->front().time);
    EXPECT_FALSE(list->front().size_bytes);
}

TEST(ChronelList, entriesThatAreNoRecords_areLeftOut) {
    const auto list =
        read_chronel_list(R"([1,"a",null,[{"fileName":"in","cloneFileName":"1","type":"b"}],{},)"
                          R"({"fileName":"a","type":"b"},)"
                          R"({"fileName":"good","cloneFileName":"1","type":"b"}])");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_EQ(list->front().file_name, L"good");
}

TEST(ChronelList, emptyLists_areLists) {
    EXPECT_TRUE(read_chronel_list("[]"));
    EXPECT_TRUE(read_chronel_list(R"({"chronels":[]})"));
}

class ChronelListRefusal : public testing::TestWithParam<const char*> {};

TEST_P(ChronelListRefusal, text_isNoList) {
    EXPECT_FALSE(read_chronel_list(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(texts, ChronelListRefusal,
                         testing::Values("", " ", "nonsense", "[", "[{]", "5", "null", "\"chronels\"", "{}",
                                         R"({"chronels":5})", R"({"chronels":{"a":[]}})", R"({"other":[]})",
                                         "[] trailing", "[\"\xff\"]", R"(["\ud800"])", "[1,]"));

TEST(ChronelList, nestingBeyondTheLimit_isRefusedWithoutHarm) {
    const auto nested = [](std::size_t levels) {
        return R"([{"fileName":"a","cloneFileName":"1","type":)" + std::string(levels, '[') +
               std::string(levels, ']') + "}]";
    };
    EXPECT_TRUE(read_chronel_list(nested(deepest_nesting - 2)));
    EXPECT_FALSE(read_chronel_list(nested(deepest_nesting - 1)));
    EXPECT_FALSE(read_chronel_list(nested(2'000'000)));
    EXPECT_FALSE(read_chronel_list(std::string(10'000'000, '[')));
    EXPECT_FALSE(read_chronel_list(std::string(10'000'000, '[') + std::string(10'000'000, ']')));
}

TEST(ChronelList, longestList_isReadInReasonableTime) {
    const std::string record =
        R"({"fileName":"sea.txt","cloneFileName":"7","type":"manual","time":5,"size":12},)";
    std::string text = "[";
    while (text.size() + record.size() < longest_list_bytes) {
        text += record;
    }
    text.back() = ']';
    const ULONGLONG start_ms = GetTickCount64();
    const auto list = read_chronel_list(text);
    EXPECT_LT(GetTickCount64() - start_ms, 10'000U) << "linear is well under two seconds";
    ASSERT_TRUE(list);
    EXPECT_EQ(list->size(), text.size() / record.size());
}

// Taking a record out of its array searches the array from the start: what stands before must not stay there.
TEST(ChronelList, recordsBehindManyNumbers_areStillReadInLinearTime) {
    std::string text = "[";
    for (int i = 0; i < 1'000'000; ++i) {
        text += "1,[],";
    }
    for (int i = 0; i < 100'000; ++i) {
        text += R"({"fileName":"a","cloneFileName":"1","type":"b"},)";
    }
    text.back() = ']';
    const ULONGLONG start_ms = GetTickCount64();
    const auto list = read_chronel_list(text);
    EXPECT_LT(GetTickCount64() - start_ms, 10'000U);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->size(), 100'000U);
}

}  // namespace
}  // namespace ov::dialog
