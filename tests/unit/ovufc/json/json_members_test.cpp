#include "ovufc/json_members.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace {

using ov::as_integer;
using ov::as_text;
using ov::find_member;
using ov::json;

TEST(FindMember, object_that_has_it_points_at_the_value) {
    const json object = json::parse(R"({"a":null,"b":2})");
    ASSERT_NE(find_member(object, "a"), nullptr);
    EXPECT_TRUE(find_member(object, "a")->is_null());
    EXPECT_EQ(find_member(object, "b"), &object["b"]);
}

TEST(FindMember, object_without_it_is_null) {
    EXPECT_EQ(find_member(json::parse(R"({"A":1})"), "a"), nullptr);
}

TEST(FindMember, anything_but_an_object_is_null) {
    for (const char* text : {"null", "1", "1.5", "true", "\"a\"", "[{\"a\":1}]"}) {
        EXPECT_EQ(find_member(json::parse(text), "a"), nullptr) << text;
    }
    EXPECT_EQ(find_member(json(json::value_t::discarded), "a"), nullptr);
}

TEST(AsText, string_points_at_its_text) {
    const json text = "abc";
    ASSERT_NE(as_text(text), nullptr);
    EXPECT_EQ(*as_text(text), "abc");
}

TEST(AsText, anything_else_is_null) {
    for (const char* text : {"null", "1", "1.5", "true", "[]", "{}"}) {
        EXPECT_EQ(as_text(json::parse(text)), nullptr) << text;
    }
}

TEST(AsInteger, integers_come_as_they_are) {
    EXPECT_EQ(as_integer(json::parse("0")), 0);
    EXPECT_EQ(as_integer(json::parse("-2")), -2);
    EXPECT_EQ(as_integer(json::parse("9223372036854775807")), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(as_integer(json::parse("-9223372036854775808")), std::numeric_limits<std::int64_t>::min());
}

TEST(AsInteger, fractions_are_cut_toward_zero) {
    EXPECT_EQ(as_integer(json::parse("0.9")), 0);
    EXPECT_EQ(as_integer(json::parse("-0.9")), 0);
    EXPECT_EQ(as_integer(json::parse("-2.7")), -2);
    EXPECT_EQ(as_integer(json::parse("1e3")), 1000);
}

TEST(AsInteger, unsigned_numbers_keep_their_bits) {
    EXPECT_EQ(as_integer(json::parse("9223372036854775808")), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(as_integer(json::parse("18446744073709551614")), -2);
    EXPECT_EQ(as_integer(json::parse("18446744073709551615")), -1);
}

TEST(AsInteger, numbers_beyond_64_bits_are_none) {
    for (const char* text : {"18446744073709551616", "9.3e18", "-9.3e18", "1e300", "-1e300"}) {
        EXPECT_EQ(as_integer(json::parse(text)), std::nullopt) << text;
    }
}

TEST(AsInteger, anything_but_a_number_is_none) {
    for (const char* text : {"null", "true", "\"1\"", "[1]", "{}"}) {
        EXPECT_EQ(as_integer(json::parse(text)), std::nullopt) << text;
    }
}

}  // namespace
