#include "service/reply.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace {

using ov::service::reply;

reply of(std::string_view text) {
    return reply::parse(text.data(), text.size());
}

TEST(Reply, whole_tells_status_and_data) {
    const reply answer = of(R"({"statusCode":7,"data":{"a":1}})");
    EXPECT_EQ(answer.status(), 7);
    ASSERT_NE(answer.data(), nullptr);
    EXPECT_EQ(answer.data()->dump(), R"({"a":1})");
    EXPECT_EQ(answer.error(), "");
}

TEST(Reply, failed_exchange_tells_the_error_alone) {
    const reply answer = reply::failed(reply::transact_failed);
    EXPECT_EQ(answer.error(), "transact_drvport return unexpected result");
    EXPECT_EQ(answer.status(), std::nullopt);
    EXPECT_EQ(answer.data(), nullptr);
}

TEST(Reply, bytes_after_the_first_nul_do_not_count) {
    EXPECT_EQ(of(std::string_view("{\"statusCode\":1}\0garbage", 24)).status(), 1);
}

TEST(Reply, that_fills_the_buffer_needs_no_nul) {
    EXPECT_EQ(of(R"({"statusCode":1})").status(), 1);
    EXPECT_EQ(reply::parse(R"({"statusCode":12})", 17).status(), 12);
}

TEST(Reply, nothing_or_no_json_has_neither_status_nor_data) {
    for (const std::string_view text :
         {std::string_view(), std::string_view("\0\0", 2), std::string_view("OK"),
          std::string_view("{\"statusCode\":0"), std::string_view("{\"statusCode\":0,\"data\":{}}}"),
          std::string_view("\xFF\xFE")}) {
        const reply answer = of(text);
        EXPECT_EQ(answer.status(), std::nullopt) << text;
        EXPECT_EQ(answer.data(), nullptr) << text;
        EXPECT_EQ(answer.error(), "") << text;
    }
}

TEST(Reply, json_that_is_no_object_has_neither_status_nor_data) {
    for (const char* text : {"null", "0", "\"statusCode\"", "[0,{}]", "[{\"statusCode\":0}]", "true"}) {
        EXPECT_EQ(of(text).status(), std::nullopt) << text;
        EXPECT_EQ(of(text).data(), nullptr) << text;
    }
}

TEST(Reply, nested_too_deeply_counts_as_no_json) {
    const std::string deep = std::string(900, '[') + std::string(900, ']');
    const reply answer = of(R"({"statusCode":0,"data":)" + deep + "}");
    EXPECT_EQ(answer.status(), std::nullopt);
    EXPECT_EQ(answer.data(), nullptr);
}

TEST(ReplyStatus, fraction_is_cut_toward_zero) {
    EXPECT_EQ(of(R"({"statusCode":0.9})").status(), 0);
    EXPECT_EQ(of(R"({"statusCode":-0.9})").status(), 0);
    EXPECT_EQ(of(R"({"statusCode":-2.9})").status(), -2);
    EXPECT_EQ(of(R"({"statusCode":1.0})").status(), 1);
}

TEST(ReplyStatus, unsigned_number_is_the_signed_one_of_the_same_bits) {
    EXPECT_EQ(of(R"({"statusCode":18446744073709551614})").status(), -2);
    EXPECT_EQ(of(R"({"statusCode":9223372036854775808})").status(), std::numeric_limits<std::int64_t>::min());
}

TEST(ReplyStatus, number_beyond_64_bits_is_a_status_nobody_knows) {
    for (const char* text :
         {R"({"statusCode":1e300})", R"({"statusCode":-1e300})", R"({"statusCode":18446744073709551616})"}) {
        EXPECT_EQ(of(text).status(), std::numeric_limits<std::int64_t>::max()) << text;
    }
}

TEST(ReplyStatus, anything_but_a_number_is_none) {
    for (const char* text : {R"({"statusCode":null})", R"({"statusCode":"0"})", R"({"statusCode":false})",
                             R"({"statusCode":[0]})", R"({"statusCode":{}})", R"({"StatusCode":0})"}) {
        EXPECT_EQ(of(text).status(), std::nullopt) << text;
    }
}

TEST(ReplyData, of_any_type_is_there) {
    for (const char* text : {R"({"data":null})", R"({"data":0})", R"({"data":""})", R"({"data":[]})"}) {
        EXPECT_NE(of(text).data(), nullptr) << text;
    }
}

TEST(Reply, key_given_twice_counts_as_its_last) {
    const reply answer = of(R"({"statusCode":5,"data":1,"statusCode":0,"data":2})");
    EXPECT_EQ(answer.status(), 0);
    EXPECT_EQ(*answer.data(), 2);
}

}  // namespace
