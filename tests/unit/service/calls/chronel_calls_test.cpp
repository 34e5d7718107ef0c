#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "service/calls.h"
#include "tests/unit/service/calls/calls_fixture.h"

namespace {

using namespace ov::service;  // the functions under test
using ov::json;

const std::wstring tracked_file = L"C:\\\u00E9.txt";

class RestoreFileChronel : public ov::test::service_calls_test {};
class OpenFileChronel : public ov::test::service_calls_test {};

TEST_F(RestoreFileChronel, record_is_copied) {
    restore_file_chronel(tracked_file,
                         "{\"type\":3,\"cloneFileName\":\"c\xC3\xB6\",\"fileName\":\"f\",\"more\":1}");
    EXPECT_EQ(sent(),
              "{\"parameters\":{\"chronelType\":3,\"cloneFileName\":\"c\xC3\xB6\","
              "\"fileName\":\"C:\\\\\xC3\xA9.txt\",\"usedFileName\":\"f\"},\"serviceCall\":42}");
}

TEST_F(OpenFileChronel, record_is_copied_except_the_name_used) {
    open_file_chronel(tracked_file, R"({"type":3,"cloneFileName":"c","fileName":"f"})", L"C:\\open as.txt");
    EXPECT_EQ(sent(),
              "{\"parameters\":{\"chronelType\":3,\"cloneFileName\":\"c\","
              "\"fileName\":\"C:\\\\\xC3\xA9.txt\",\"usedFileName\":\"C:\\\\open as.txt\"},"
              "\"serviceCall\":47}");
}

TEST_F(RestoreFileChronel, values_of_any_type_are_copied_as_they_are) {
    restore_file_chronel(
        L"f", R"({"type":{"b":[1,null],"a":-1},"cloneFileName":18446744073709551615,"fileName":0.5})");
    EXPECT_EQ(sent(),
              R"({"parameters":{"chronelType":{"a":-1,"b":[1,null]},"cloneFileName":18446744073709551615,)"
              R"("fileName":"f","usedFileName":0.5},"serviceCall":42})");
}

TEST_F(RestoreFileChronel, missing_members_are_null) {
    restore_file_chronel(L"f", "{}");
    EXPECT_EQ(sent(), R"({"parameters":{"chronelType":null,"cloneFileName":null,"fileName":"f",)"
                      R"("usedFileName":null},"serviceCall":42})");
}

TEST_F(OpenFileChronel, missing_members_are_null) {
    open_file_chronel(L"f", R"({"fileName":"not used"})", L"n");
    EXPECT_EQ(sent(), R"({"parameters":{"chronelType":null,"cloneFileName":null,"fileName":"f",)"
                      R"("usedFileName":"n"},"serviceCall":47})");
}

struct chronel_row {
    const char* name;
    std::function<void(const std::string& identifier)> call;
};

class ChronelCalls : public ov::test::service_calls_test, public testing::WithParamInterface<chronel_row> {};

TEST_P(ChronelCalls, identifier_that_is_not_json_raises_parse_error_and_sends_nothing) {
    for (const char* identifier : {"", "x", "{", "{\"type\":1}}", "{\"type\":\"\xFF\"}"}) {
        EXPECT_THROW(GetParam().call(identifier), json::parse_error) << identifier;
    }
    EXPECT_TRUE(nothing_sent());
}

TEST_P(ChronelCalls, identifier_nested_too_deeply_raises_parse_error_and_sends_nothing) {
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    EXPECT_THROW(GetParam().call("{\"type\":" + deep + "}"), json::parse_error);
    EXPECT_TRUE(nothing_sent());
}

TEST_P(ChronelCalls, identifier_that_is_no_record_sends_nothing) {
    for (const char* identifier : {"null", "1", "\"f\"", "[]", "true"}) {
        GetParam().call(identifier);
    }
    EXPECT_TRUE(nothing_sent());
}

TEST_P(ChronelCalls, reply_is_not_looked_at) {
    for (const char* reply : {"", "no json", R"({"statusCode":5})"}) {
        answer(reply);
        EXPECT_NO_THROW(GetParam().call("{}")) << reply;
    }
    EXPECT_EQ(service.requests().size(), 3u);
}

TEST_P(ChronelCalls, failed_exchange_is_not_told) {
    serve_nothing();
    EXPECT_NO_THROW(GetParam().call("{}"));
    EXPECT_TRUE(nothing_sent());
}

const chronel_row chronel_rows[] = {
    {"restore", [](const std::string& identifier) { restore_file_chronel(L"f", identifier); }},
    {"open", [](const std::string& identifier) { open_file_chronel(L"f", identifier, L"n"); }},
};

INSTANTIATE_TEST_SUITE_P(Rows, ChronelCalls, testing::ValuesIn(chronel_rows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
