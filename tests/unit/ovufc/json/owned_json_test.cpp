#include "ovufc/owned_json.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "ovufc/json_bounded.h"

namespace {

using ov::dismantle;
using ov::json;
using ov::owned_json;

TEST(Dismantle, nested_value_is_empty) {
    json value = json::parse(R"({"a":[1,{"b":"c"},[]],"d":{}})");
    dismantle(value);
    EXPECT_EQ(value, json::object());
    value = json::parse(R"([[1],{"a":2}])");
    dismantle(value);
    EXPECT_EQ(value, json::array());
}

TEST(Dismantle, value_without_members_stays_as_it_is) {
    for (const char* text : {"null", "1", "\"a text\"", "true", "[]", "{}"}) {
        json value = json::parse(text);
        dismantle(value);
        EXPECT_EQ(value, json::parse(text)) << text;
    }
    json discarded(json::value_t::discarded);
    dismantle(discarded);
    EXPECT_TRUE(discarded.is_discarded());
}

TEST(Dismantle, value_as_deep_as_the_bounded_parser_lets_through_is_empty) {
    json value =
        ov::parse_bounded(std::string(ov::json_depth_limit, '[') + std::string(ov::json_depth_limit, ']'));
    ASSERT_FALSE(value.empty());
    dismantle(value);
    EXPECT_TRUE(value.empty());
}

TEST(OwnedJson, set_adds_and_replaces_members) {
    owned_json object = json::object();
    object.set("b", 1);
    object.set("a", json::parse("[2]"));
    object.set("b", std::string("c"));
    EXPECT_EQ(object.value.dump(), R"({"a":[2],"b":"c"})");
}

TEST(OwnedJson, moved_takes_the_value_along) {
    owned_json from = json::parse("[1,2]");
    const owned_json to = std::move(from);
    EXPECT_EQ(to.value, json::parse("[1,2]"));
}

}  // namespace
