#include <gtest/gtest.h>

#include <string>

#include "service/calls.h"
#include "testkit/process/throw_count.h"
#include "tests/unit/service/calls/calls_fixture.h"

namespace {

using namespace ov::service;  // the functions under test
using ov::test::throws_so_far;

/// What is expected to fail now and then fails without an exception, in our code and in the library's.
class ExpectedFailures : public ov::test::service_calls_test {
  protected:
    static void make_every_call() {
        bool flag = false;
        std::int64_t number = 0;
        static_cast<void>(get_folder_status(L"C:\\\xD800", flag, flag));
        static_cast<void>(protect_folder(L"C:\\\xD800"));
        static_cast<void>(protect_folder_as(L"C:\\", L"\xDC00"));
        static_cast<void>(unprotect_folder(std::wstring(5000, L'x')));
        static_cast<void>(export_folder(L"", export_kind::chronels));
        static_cast<void>(get_file_chronels(L"f"));
        restore_file_chronel(L"f", "[]");
        open_file_chronel(L"f", "{}", L"n");
        static_cast<void>(get_restore_points(number, number));
        static_cast<void>(get_restore_folders(1, 2));
        static_cast<void>(restore_from_point(1, 2));
        static_cast<void>(get_last_timestamp());
        static_cast<void>(get_protected_folders());
    }
};

TEST_F(ExpectedFailures, driver_that_serves_nothing_throws_nothing) {
    serve_nothing();
    const auto before = throws_so_far();
    make_every_call();
    EXPECT_EQ(throws_so_far(), before);
}

TEST_F(ExpectedFailures, replies_of_every_wrong_shape_throw_nothing) {
    const std::string deep(1000, '[');
    for (const std::string& reply :
         {std::string(), std::string("no json"), std::string("{\"statusCode\":"), std::string("null"), deep,
          std::string("{\"statusCode\":0,\"data\":\"\xFF\"}"), std::string(R"({"statusCode":1e999})"),
          std::string(R"({"statusCode":0})"), std::string(R"({"data":{}})"),
          std::string(R"({"statusCode":7,"data":{}})"), std::string(R"({"statusCode":"0","data":{}})"),
          std::string(R"({"statusCode":0,"data":null})"),
          std::string(R"({"statusCode":0,"data":{"protectedFolder":1,"objPath":1,"restorePoints":1}})"),
          std::string(R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":1,"objPath":null}})"),
          std::string(R"({"statusCode":0,"data":{"objPath":"C:\\no such file.orv","restorePoints":[1]}})"),
          std::string(R"({"statusCode":-2,"data":{"lastTimestamp":"1"}})")}) {
        answer(reply);
        const auto before = throws_so_far();
        make_every_call();
        EXPECT_EQ(throws_so_far(), before) << reply;
    }
}

}  // namespace
