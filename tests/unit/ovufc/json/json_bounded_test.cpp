#include "ovufc/json_bounded.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ov::json;
using ov::json_depth_limit;
using ov::parse_bounded;
using ov::parse_bounded_or_throw;

std::string nested(std::size_t levels) {
    return std::string(levels, '[') + std::string(levels, ']');
}

std::string nested_objects(std::size_t levels) {
    std::string text;
    for (std::size_t level = 0; level != levels; ++level) {
        text += "{\"a\":";
    }
    return text + "1" + std::string(levels, '}');
}

TEST(JsonBounded, valid_text_gives_the_librarys_value) {
    const std::string text = R"({"a":[1,-2,3.5,true,null,"x"],"b":{}})";
    EXPECT_EQ(parse_bounded(text), json::parse(text));
    EXPECT_EQ(parse_bounded_or_throw(text), json::parse(text));
}

TEST(JsonBounded, byte_order_mark_is_skipped) {
    EXPECT_EQ(parse_bounded("\xEF\xBB\xBF[1]"), json::parse("[1]"));
}

TEST(JsonBounded, text_that_is_not_json_is_discarded) {
    for (const char* text : {"", " ", "x", "{", "[1,]", "{\"a\":1} x", "{'a':1}", "nul", "\"\xFF\"", "[1",
                             "1e999", "\"\\ud800\"", "// c\n1"}) {
        EXPECT_TRUE(parse_bounded(text).is_discarded()) << text;
    }
}

TEST(JsonBounded, text_that_is_not_json_throws_the_librarys_parse_error) {
    for (const char* text : {"", "x", "{", "[1,]", "{\"a\":1} x", "\"\xFF\""}) {
        EXPECT_THROW(static_cast<void>(parse_bounded_or_throw(text)), json::parse_error) << text;
    }
}

TEST(JsonBounded, number_beyond_a_double_throws_the_librarys_out_of_range) {
    EXPECT_THROW(static_cast<void>(parse_bounded_or_throw("1e999")), json::out_of_range);
}

TEST(JsonBounded, nesting_at_the_limit_is_read) {
    EXPECT_TRUE(parse_bounded(nested(json_depth_limit)).is_array());
    EXPECT_TRUE(parse_bounded(nested_objects(json_depth_limit)).is_object());
}

TEST(JsonBounded, nesting_above_the_limit_is_discarded) {
    EXPECT_TRUE(parse_bounded(nested(json_depth_limit + 1)).is_discarded());
    EXPECT_TRUE(parse_bounded(nested_objects(json_depth_limit + 1)).is_discarded());
    EXPECT_TRUE(parse_bounded("{\"a\":" + nested(json_depth_limit) + "}").is_discarded());
}

TEST(JsonBounded, nesting_above_the_limit_throws_the_librarys_parse_error) {
    EXPECT_THROW(static_cast<void>(parse_bounded_or_throw(nested(json_depth_limit + 1))), json::parse_error);
}

TEST(JsonBounded, hundred_thousand_levels_are_refused_open_or_closed) {
    EXPECT_TRUE(parse_bounded(nested(100000)).is_discarded());
    EXPECT_TRUE(parse_bounded(std::string(100000, '[')).is_discarded());
    EXPECT_TRUE(parse_bounded(nested_objects(100000)).is_discarded());
}

TEST(JsonBounded, many_siblings_do_not_count_as_depth) {
    std::string text = "[";
    for (int sibling = 0; sibling != 10000; ++sibling) {
        text += "[{}],";
    }
    text += "0]";
    EXPECT_EQ(parse_bounded(text).size(), 10001u);
}

TEST(JsonBounded, key_given_twice_keeps_the_last) {
    EXPECT_EQ(parse_bounded(R"({"a":1,"a":2})")["a"], 2);
}

}  // namespace
