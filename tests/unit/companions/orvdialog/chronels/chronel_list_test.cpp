#include "companions/orvdialog/chronels/chronel_list.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace ov::dialog {
namespace {

constexpr const char* one_record =
    R"([{"type":"manual","fileName":"sea.txt","cloneFileName":"7","time":5,"size":12,"more":[1,{"x":null}]}])";

TEST(ChronelList, record_is_read_with_its_whole_text) {
    const auto list = chronel_list::read(one_record);
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    const chronel item = list->at(0);
    EXPECT_EQ(
        item.identifier,
        R"({"cloneFileName":"7","fileName":"sea.txt","more":[1,{"x":null}],"size":12,"time":5,"type":"manual"})");
    EXPECT_EQ(item.file_name, L"sea.txt");
    EXPECT_EQ(item.type, L"manual");
    EXPECT_EQ(list->time(0), 5U);
    EXPECT_EQ(list->size_bytes(0), 12U);
}

TEST(ChronelList, object_with_chronels_is_a_list_too) {
    const auto list =
        chronel_list::read(R"({"version":1,"others":[{"fileName":"x","cloneFileName":"x","type":"x"}],)"
                           R"("chronels":[{"fileName":"a","cloneFileName":"1","type":"b"}]})");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_EQ(list->at(0).file_name, L"a");
}

TEST(ChronelList, created_on_stands_in_for_time) {
    const auto list = chronel_list::read(
        R"([{"fileName":"a","cloneFileName":"1","type":"b","createdOn":9},)"
        R"({"fileName":"a","cloneFileName":"2","type":"b","createdOn":9,"time":1},)"
        R"({"fileName":"a","cloneFileName":"3","type":"b","time":1,"createdOn":9,"time":"x"}])");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 3U);
    EXPECT_EQ(list->time(0), 9U);
    EXPECT_EQ(list->time(1), 1U);
    EXPECT_EQ(list->time(2), 9U) << "the last of a name counts";
}

TEST(ChronelList, members_of_inner_objects_are_not_the_records) {
    const auto list = chronel_list::read(
        R"([{"in":{"fileName":"x","time":7},"fileName":"a","cloneFileName":"1","type":"b"},)"
        R"({"in":{"fileName":"x","cloneFileName":"1","type":"b"}}])");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_FALSE(list->time(0));
}

TEST(ChronelList, spaces_and_numbers_at_the_ends_do_not_shift_a_record) {
    const auto list = chronel_list::read(
        "\xEF\xBB\xBF [ 1 ,2, {\"fileName\" : \"a\", \"type\":\"b\",\n\"cloneFileName\":12} , {\"size\":3}, "
        "{\"fileName\":\"z\",\"type\":\"b\",\"cloneFileName\":1}]");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 2U);
    EXPECT_EQ(list->at(0).identifier, R"({"cloneFileName":12,"fileName":"a","type":"b"})");
    EXPECT_EQ(list->at(1).file_name, L"z");
}

TEST(ChronelList, text_that_has_changed_meanwhile_gives_an_empty_record) {
    std::string text = one_record;
    const auto list = chronel_list::read(text);
    ASSERT_TRUE(list);
    text.assign(text.size(), '?');
    EXPECT_EQ(list->at(0).identifier, "");
    EXPECT_EQ(list->at(0).file_name, L"");
}

TEST(ChronelList, members_of_other_kinds_are_shown_as_they_stand) {
    const auto list = chronel_list::read(R"([{"fileName":"\u00e4\ud83d\ude00","cloneFileName":null,"type":3,)"
                                         R"("time":-5,"size":"big"}])");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_EQ(list->at(0).file_name, L"\u00e4\U0001F600");
    EXPECT_EQ(list->at(0).type, L"3");
    EXPECT_FALSE(list->time(0));
    EXPECT_FALSE(list->size_bytes(0));
}

TEST(ChronelList, entries_that_are_no_records_are_left_out) {
    const auto list =
        chronel_list::read(R"([1,"a",null,[{"fileName":"in","cloneFileName":"1","type":"b"}],{},)"
                           R"({"fileName":"a","type":"b"},)"
                           R"({"fileName":"good","cloneFileName":"1","type":"b"}])");
    ASSERT_TRUE(list);
    ASSERT_EQ(list->size(), 1U);
    EXPECT_EQ(list->at(0).file_name, L"good");
}

TEST(ChronelList, empty_lists_are_lists) {
    EXPECT_TRUE(chronel_list::read("[]"));
    EXPECT_TRUE(chronel_list::read(R"({"chronels":[]})"));
}

class ChronelListRefusal : public testing::TestWithParam<const char*> {};

TEST_P(ChronelListRefusal, text_is_no_list) {
    EXPECT_FALSE(chronel_list::read(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(texts, ChronelListRefusal,
                         testing::Values("", " ", "nonsense", "[", "[{]", "5", "null", "\"chronels\"", "{}",
                                         R"({"chronels":5})", R"({"chronels":{"a":[]}})", R"({"other":[]})",
                                         "[] trailing", "[\"\xff\"]", R"(["\ud800"])", "[1,]"));

TEST(ChronelList, nul_ends_no_list) {
    EXPECT_FALSE(chronel_list::read(std::string_view("[]\0", 3)));
    EXPECT_FALSE(chronel_list::read(std::string_view("[]\0 more", 8)));
    EXPECT_FALSE(chronel_list::read(std::string_view("[\"a\0b\"]", 7)));
    EXPECT_TRUE(chronel_list::read(R"(["a\u0000b"])"));
}

TEST(ChronelList, record_with_half_of_a_surrogate_pair_reads_as_empty) {
    const auto list = chronel_list::read(R"([{"fileName":"\udc00","cloneFileName":"1","type":"b"}])");
    ASSERT_TRUE(list);
    EXPECT_EQ(list->at(0).identifier, "");
}

TEST(ChronelList, bytes_beyond_ascii_are_checked_wherever_they_stand) {
    const auto with = [](std::size_t place) {
        std::string text = R"([{"fileName":"0123456789abcdef","cloneFileName":"1","type":"b"}])";
        text[text.find('0') + place] = '\xFF';
        return text;
    };
    for (std::size_t place = 0; place < 16; ++place) {
        EXPECT_FALSE(chronel_list::read(with(place))) << place;
    }
    EXPECT_FALSE(chronel_list::read("[\"\xFF\"]"));
}

TEST(ChronelList, nesting_beyond_the_limit_is_refused_without_harm) {
    const auto nested = [](std::size_t levels) {
        return R"([{"fileName":"a","cloneFileName":"1","type":)" + std::string(levels, '[') +
               std::string(levels, ']') + "}]";
    };
    EXPECT_TRUE(chronel_list::read(nested(deepest_nesting - 2)));
    EXPECT_FALSE(chronel_list::read(nested(deepest_nesting - 1)));
    EXPECT_FALSE(chronel_list::read(nested(2'000'000)));
    EXPECT_FALSE(chronel_list::read(std::string(10'000'000, '[')));
    EXPECT_FALSE(chronel_list::read(std::string(10'000'000, '[') + std::string(10'000'000, ']')));
}

TEST(ChronelList, longest_list_is_read_in_reasonable_time) {
    const std::string record =
        R"({"fileName":"sea.txt","cloneFileName":"7","type":"manual","time":5,"size":12},)";
    std::string text = "[";
    while (text.size() + record.size() < longest_list_bytes) {
        text += record;
    }
    text.back() = ']';
    const ULONGLONG start_ms = GetTickCount64();
    const auto list = chronel_list::read(text);
    EXPECT_LT(GetTickCount64() - start_ms, 10'000U) << "linear is well under two seconds";
    ASSERT_TRUE(list);
    EXPECT_EQ(list->size(), text.size() / record.size());
}

// Taking a record out of its array searches the array from the start: what stands before must not stay there.
TEST(ChronelList, records_behind_many_numbers_are_still_read_in_linear_time) {
    std::string text = "[";
    for (int i = 0; i < 1'000'000; ++i) {
        text += "1,[],";
    }
    for (int i = 0; i < 100'000; ++i) {
        text += R"({"fileName":"a","cloneFileName":"1","type":"b"},)";
    }
    text.back() = ']';
    const ULONGLONG start_ms = GetTickCount64();
    const auto list = chronel_list::read(text);
    EXPECT_LT(GetTickCount64() - start_ms, 10'000U);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->size(), 100'000U);
}

}  // namespace
}  // namespace ov::dialog
