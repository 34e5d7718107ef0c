#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

#include "service/calls.h"
#include "tests/unit/service/calls/calls_fixture.h"

namespace {

using namespace ov::service;  // the functions under test

class GetRestorePoints : public ov::test::service_calls_test {
  protected:
    std::int64_t createdOn = 11;
    std::int64_t sequenceNumber = 22;
};

TEST_F(GetRestorePoints, request_has_no_parameters) {
    EXPECT_FALSE(get_restore_points(createdOn, sequenceNumber));
    EXPECT_EQ(sent(), R"({"parameters":{},"serviceCall":36})");
}

TEST_F(GetRestorePoints, two_points_give_the_first) {
    answer(R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":132539328000000000,"sequenceNumber":-1},
              {"createdOn":5,"sequenceNumber":6}]}})");
    EXPECT_TRUE(get_restore_points(createdOn, sequenceNumber));
    EXPECT_EQ(createdOn, 132539328000000000);
    EXPECT_EQ(sequenceNumber, -1);
}

TEST_F(GetRestorePoints, none_or_failure_is_false_and_leaves_the_values) {
    for (const char* reply :
         {R"({"statusCode":0,"data":{"restorePoints":[]}})", R"({"statusCode":0})",
          R"({"statusCode":0,"data":{}})", R"({"data":{"restorePoints":[]}})",
          R"({"statusCode":1,"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":6}]}})",
          R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":5}]}})", "no json"}) {
        answer(reply);
        EXPECT_FALSE(get_restore_points(createdOn, sequenceNumber)) << reply;
    }
    serve_nothing();
    EXPECT_FALSE(get_restore_points(createdOn, sequenceNumber));
    EXPECT_EQ(createdOn, 11);
    EXPECT_EQ(sequenceNumber, 22);
}

class RestoreFromPoint : public ov::test::service_calls_test {};

TEST_F(RestoreFromPoint, request_names_the_point) {
    static_cast<void>(restore_from_point(132539328000000000, 7));
    EXPECT_EQ(sent(),
              R"({"parameters":{"createdOn":132539328000000000,"sequenceNumber":7},"serviceCall":39})");
}

TEST_F(RestoreFromPoint, status_0_is_true_without_data) {
    answer(R"({"statusCode":0})");
    EXPECT_TRUE(restore_from_point(1, 2));
}

TEST_F(RestoreFromPoint, any_other_status_is_false) {
    for (const char* reply :
         {R"({"statusCode":5})", R"({"statusCode":-2,"data":{}})", R"({"statusCode":-1.5})"}) {
        answer(reply);
        EXPECT_FALSE(restore_from_point(1, 2)) << reply;
    }
}

TEST_F(RestoreFromPoint, failed_exchange_is_true) {
    for (const char* reply : {"", "no json", "[5]", R"({"data":{}})", R"({"statusCode":"5"})"}) {
        answer(reply);
        EXPECT_TRUE(restore_from_point(1, 2)) << reply;
    }
    serve_nothing();
    EXPECT_TRUE(restore_from_point(1, 2));
}

class GetLastTimestamp : public ov::test::service_calls_test {};

TEST_F(GetLastTimestamp, request_has_no_parameters) {
    static_cast<void>(get_last_timestamp());
    EXPECT_EQ(sent(), R"({"parameters":{},"serviceCall":45})");
}

TEST_F(GetLastTimestamp, status_minus_2_gives_the_timestamp) {
    answer(R"({"statusCode":-2,"data":{"lastTimestamp":132539328000000000}})");
    EXPECT_EQ(get_last_timestamp(), 132539328000000000u);
    answer(R"({"statusCode":-2,"data":{"lastTimestamp":0}})");
    EXPECT_EQ(get_last_timestamp(), 0u);
}

TEST_F(GetLastTimestamp, any_other_reply_is_none) {
    for (const char* reply :
         {R"({"statusCode":0,"data":{"lastTimestamp":5}})", R"({"statusCode":-2})",
          R"({"statusCode":-2,"data":{}})", R"({"statusCode":-2,"data":{"lastTimestamp":"5"}})",
          R"({"data":{"lastTimestamp":5}})", "no json"}) {
        answer(reply);
        EXPECT_EQ(get_last_timestamp(), std::nullopt) << reply;
    }
    serve_nothing();
    EXPECT_EQ(get_last_timestamp(), std::nullopt);
}

}  // namespace
