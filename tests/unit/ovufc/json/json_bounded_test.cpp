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

TEST(JsonBounded, validText_givesTheLibrarysValue) {
    const std::string text = R"({"a":[1,-2,3.5,true,null,"x"],"b":{}})";
    EXPECT_EQ(parse_bounded(text), json::parse(text));
    EXPECT_EQ(parse_bounded_or_throw(text), json::parse(text));
}

TEST(JsonBounded, byteOrderMark_isSkipped) {
    EXPECT_EQ(parse_bounded("\xEF\xBB\xBF[1]"), json::parse("[1]"));
}

TEST(JsonBounded, textThatIsNotJson_isDiscarded) {
    for (const char* text : {"", " ", "x", "{", "[1,]", "{\"a\":1} x", "{'a':1}", "nul", "\"\xFF\"", "[1",
                             "1e999", "\"\\ud800\"", "// c\n1"}) {
        EXPECT_TRUE(parse_bounded(text).is_discarded()) << text;
    }
}

TEST(JsonBounded, textThatIsNotJson_throwsTheLibrarysParseError) {
    for (const char* text : {"", "x", "{", "[1,]", "{\"a\":1} x", "\"\xFF\""}) {
        EXPECT_THROW(static_cast<void>(parse_bounded_or_throw(text)), json::parse_error) << text;
    }
}

TEST(JsonBounded, numberBeyondADouble_throwsTheLibrarysOutOfRange) {
    EXPECT_THROW(static_cast<void>(parse_bounded_or_throw("1e999")), json::out_of_range);
}

TEST(JsonBounded, nestingAtTheLimit_isRead) {
    EXPECT_TRUE(parse_bounded(nested(json_depth_limit)).is_array());
    EXPECT_TRUE(parse_bounded(nested_objects(json_depth_limit)).is_object());
}

TEST(JsonBounded, nestingAboveTheLimit_isDiscarded) {
    EXPECT_TRUE(parse_bounded(nested(json_depth_limit + 1)).is_discarded());
    EXPECT_TRUE(parse_bounded(nested_objects(json_depth_limit + 1)).is_discarded());
    EXPECT_TRUE(parse_bounded("{\"a\":" + nested(json_depth_limit) + "}").is_discarded());
}

TEST(JsonBounded, nestingAboveTheLimit_throwsTheLibrarysParseError) {
    EXPECT_THROW(static_cast<void>(parse_bounded_or_throw(nested(json_depth_limit + 1))), json::parse_error);
}

TEST(JsonBounded, hundredThousandLevels_areRefusedOpenOrClosed) {
    EXPECT_TRUE(parse_bounded(nested(100000)).is_discarded());
    EXPECT_TRUE(parse_bounded(std::string(100000, '[')).is_discarded());
    EXPECT_TRUE(parse_bounded(nested_objects(100000)).is_discarded());
}

TEST(JsonBounded, manySiblings_doNotCountAsDepth) {
    std::string text = "[";
    for (int sibling = 0; sibling != 10000; ++sibling) {
        text += "[{}],";
    }
    text += "0]";
    EXPECT_EQ(parse_bounded(text).size(), 10001u);
}

TEST(JsonBounded, keyGivenTwice_keepsTheLast) {
    EXPECT_EQ(parse_bounded(R"({"a":1,"a":2})")["a"], 2);
}

}  // namespace
