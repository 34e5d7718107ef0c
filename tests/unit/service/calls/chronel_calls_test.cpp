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

TEST_F(RestoreFileChronel, record_isCopied) {
    restore_file_chronel(tracked_file,
                         "{\"type\":3,\"cloneFileName\":\"c\xC3\xB6\",\"fileName\":\"f\",\"more\":1}");
    EXPECT_EQ(sent(),
              "{\"parameters\":{\"chronelType\":3,\"cloneFileName\":\"c\xC3\xB6\","
              "\"fileName\":\"C:\\\\\xC3\xA9.txt\",\"usedFileName\":\"f\"},\"serviceCall\":42}");
}

TEST_F(OpenFileChronel, record_isCopiedExceptTheNameUsed) {
    open_file_chronel(tracked_file, R"({"type":3,"cloneFileName":"c","fileName":"f"})", L"C:\\open as.txt");
    EXPECT_EQ(sent(),
              "{\"parameters\":{\"chronelType\":3,\"cloneFileName\":\"c\","
              "\"fileName\":\"C:\\\\\xC3\xA9.txt\",\"usedFileName\":\"C:\\\\open as.txt\"},"
              "\"serviceCall\":47}");
}

TEST_F(RestoreFileChronel, valuesOfAnyType_areCopiedAsTheyAre) {
    restore_file_chronel(
        L"f", R"({"type":{"b":[1,null],"a":-1},"cloneFileName":18446744073709551615,"fileName":0.5})");
    EXPECT_EQ(sent(),
              R"({"parameters":{"chronelType":{"a":-1,"b":[1,null]},"cloneFileName":18446744073709551615,)"
              R"("fileName":"f","usedFileName":0.5},"serviceCall":42})");
}

TEST_F(RestoreFileChronel, missingMembers_areNull) {
    restore_file_chronel(L"f", "{}");
    EXPECT_EQ(sent(), R"({"parameters":{"chronelType":null,"cloneFileName":null,"fileName":"f",)"
                      R"("usedFileName":null},"serviceCall":42})");
}

TEST_F(OpenFileChronel, missingMembers_areNull) {
    open_file_chronel(L"f", R"({"fileName":"not used"})", L"n");
    EXPECT_EQ(sent(), R"({"parameters":{"chronelType":null,"cloneFileName":null,"fileName":"f",)"
                      R"("usedFileName":"n"},"serviceCall":47})");
}

struct chronel_row {
    const char* name;
    std::function<void(const std::string& identifier)> call;
};

class ChronelCalls : public ov::test::service_calls_test, public testing::WithParamInterface<chronel_row> {};

TEST_P(ChronelCalls, identifierThatIsNotJson_raisesParseErrorAndSendsNothing) {
    for (const char* identifier : {"", "x", "{", "{\"type\":1}}", "{\"type\":\"\xFF\"}"}) {
        EXPECT_THROW(GetParam().call(identifier), json::parse_error) << identifier;
    }
    EXPECT_TRUE(nothing_sent());
}

TEST_P(ChronelCalls, identifierNestedTooDeeply_raisesParseErrorAndSendsNothing) {
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    EXPECT_THROW(GetParam().call("{\"type\":" + deep + "}"), json::parse_error);
    EXPECT_TRUE(nothing_sent());
}

TEST_P(ChronelCalls, identifierThatIsNoRecord_sendsNothing) {
    for (const char* identifier : {"null", "1", "\"f\"", "[]", "true"}) {
        GetParam().call(identifier);
    }
    EXPECT_TRUE(nothing_sent());
}

TEST_P(ChronelCalls, reply_isNotLookedAt) {
    for (const char* reply : {"", "no json", R"({"statusCode":5})"}) {
        answer(reply);
        EXPECT_NO_THROW(GetParam().call("{}")) << reply;
    }
    EXPECT_EQ(service.requests().size(), 3u);
}

TEST_P(ChronelCalls, failedExchange_isNotTold) {
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
