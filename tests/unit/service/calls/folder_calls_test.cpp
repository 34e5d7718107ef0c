#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "service/calls.h"
#include "tests/unit/service/calls/calls_fixture.h"

namespace {

using namespace ov::service;  // the functions under test

class GetFolderStatus : public ov::test::service_calls_test {
  protected:
    bool call() { return get_folder_status(L"C:\\Data", restricted, exports_available); }

    bool restricted = false;
    bool exports_available = false;
};

TEST_F(GetFolderStatus, request_names_the_folder) {
    call();
    EXPECT_EQ(sent(), R"({"parameters":{"folderName":"C:\\Data"},"serviceCall":13})");
}

TEST_F(GetFolderStatus, protected_folder_is_true_and_leaves_the_flags) {
    answer(R"({"statusCode":0,"data":{"protectedFolder":true}})");
    EXPECT_TRUE(call());
    EXPECT_FALSE(restricted);
    EXPECT_FALSE(exports_available);

    restricted = true;
    EXPECT_TRUE(call());
    EXPECT_TRUE(restricted);
}

TEST_F(GetFolderStatus, unprotected_folder_is_false) {
    answer(R"({"statusCode":0,"data":{"protectedFolder":false}})");
    EXPECT_FALSE(call());
}

TEST_F(GetFolderStatus, restricted_level_sets_the_flag) {
    answer(R"({"statusCode":0,"data":{"protectedFolder":false,"uiLevel":"restricted"}})");
    EXPECT_FALSE(call());
    EXPECT_TRUE(restricted);
}

TEST_F(GetFolderStatus, level_in_other_letters_clears_the_flag) {
    restricted = true;
    answer(R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"Restricted"}})");
    EXPECT_TRUE(call());
    EXPECT_FALSE(restricted);
}

TEST_F(GetFolderStatus, exports_bit_sets_the_flag) {
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    answer(R"({"statusCode":0,"data":{"protectedFolder":false}})");
    EXPECT_FALSE(call());
    EXPECT_TRUE(exports_available);
}

TEST_F(GetFolderStatus, every_other_bit_leaves_the_exports_flag) {
    service.set_flags(~ORV_FLAG_EXPORTS_AVAILABLE);
    answer(R"({"statusCode":0,"data":{"protectedFolder":true}})");
    EXPECT_TRUE(call());
    EXPECT_FALSE(exports_available);

    exports_available = true;
    EXPECT_TRUE(call());
    EXPECT_TRUE(exports_available);
}

TEST_F(GetFolderStatus, level_that_is_no_string_keeps_the_answer_and_leaves_the_flags) {
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    answer(R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":1}})");
    EXPECT_TRUE(call());
    EXPECT_FALSE(restricted);
    EXPECT_FALSE(exports_available);
}

TEST_F(GetFolderStatus, failure_is_false_and_leaves_the_flags) {
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    for (const char* reply :
         {R"({"statusCode":1,"data":{"protectedFolder":true,"uiLevel":"restricted"}})", R"({"statusCode":0})",
          R"({"data":{"protectedFolder":true}})", R"({"statusCode":0,"data":{"uiLevel":"restricted"}})",
          R"({"statusCode":0,"data":{"protectedFolder":"true"}})",
          R"({"statusCode":"0","data":{"protectedFolder":true}})", "no json", ""}) {
        answer(reply);
        EXPECT_FALSE(call()) << reply;
        EXPECT_FALSE(restricted) << reply;
        EXPECT_FALSE(exports_available) << reply;
    }
}

TEST_F(GetFolderStatus, driver_that_serves_nothing_is_false_and_leaves_the_flags) {
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    serve_nothing();
    EXPECT_FALSE(call());
    EXPECT_FALSE(exports_available);
}

TEST_F(GetFolderStatus, path_that_is_too_long_is_cut_at_2047_bytes) {
    const std::wstring path(3000, L'x');
    static_cast<void>(get_folder_status(path, restricted, exports_available));
    const std::string whole = R"({"parameters":{"folderName":")" + std::string(3000, 'x');
    EXPECT_EQ(sent(), whole.substr(0, 2047));
}

TEST_F(GetFolderStatus, request_of_2047_bytes_arrives_whole) {
    const std::string before = R"({"parameters":{"folderName":")";
    const std::string after = R"("},"serviceCall":13})";
    const std::size_t length = 2047 - before.size() - after.size();
    static_cast<void>(get_folder_status(std::wstring(length, L'x'), restricted, exports_available));
    EXPECT_EQ(sent(), before + std::string(length, 'x') + after);
}

TEST_F(GetFolderStatus, characters_beyond_ascii_arrive_as_raw_utf_8) {
    static_cast<void>(get_folder_status(L"C:\\J\u00F6rg \U0001F4C1\xD800", restricted, exports_available));
    EXPECT_EQ(sent(),
              "{\"parameters\":{\"folderName\":\"C:\\\\J\xC3\xB6rg \xF0\x9F\x93\x81\xEF\xBF\xBD\"},"
              "\"serviceCall\":13}");
}

TEST_F(GetFolderStatus, header_names_process_thread_and_session) {
    call();
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 1u);
    DWORD session = 0;
    ASSERT_TRUE(ProcessIdToSessionId(GetCurrentProcessId(), &session));
    EXPECT_EQ(requests[0].process_id, GetCurrentProcessId());
    EXPECT_EQ(requests[0].thread_id, GetCurrentThreadId());
    EXPECT_EQ(requests[0].session_id, session);
}

/// The calls whose whole answer is an HRESULT, each with what it sends.
struct outcome_row {
    const char* name;
    std::function<HRESULT()> call;
    const char* request;
};

class OutcomeCalls : public ov::test::service_calls_test, public testing::WithParamInterface<outcome_row> {};

TEST_P(OutcomeCalls, request_is_the_rows) {
    static_cast<void>(GetParam().call());
    EXPECT_EQ(sent(), GetParam().request);
}

TEST_P(OutcomeCalls, status_0_with_data_is_ok) {
    answer(R"({"statusCode":0,"data":{}})");
    EXPECT_EQ(GetParam().call(), S_OK);
    answer(R"({"statusCode":0.9,"data":null})");
    EXPECT_EQ(GetParam().call(), S_OK);
}

TEST_P(OutcomeCalls, any_other_reply_is_unexpected) {
    for (const char* reply : {R"({"statusCode":0})", R"({"data":{}})", R"({"statusCode":1,"data":{}})",
                              R"({"statusCode":-2,"data":{}})", R"({"statusCode":"0","data":{}})",
                              R"([{"statusCode":0,"data":{}}])", "no json", ""}) {
        answer(reply);
        EXPECT_EQ(GetParam().call(), E_UNEXPECTED) << reply;
    }
}

TEST_P(OutcomeCalls, driver_that_serves_nothing_is_unexpected) {
    serve_nothing();
    EXPECT_EQ(GetParam().call(), E_UNEXPECTED);
}

TEST_P(OutcomeCalls, reply_cut_at_2048_bytes_is_unexpected) {
    answer(R"({"statusCode":0,"data":")" + std::string(3000, 'x') + "\"}");
    EXPECT_EQ(GetParam().call(), E_UNEXPECTED);
}

TEST_P(OutcomeCalls, reply_of_2048_bytes_is_ok) {
    const std::string before = R"({"statusCode":0,"data":")";
    answer(before + std::string(2048 - before.size() - 2, 'x') + "\"}");
    EXPECT_EQ(GetParam().call(), S_OK);
}

const outcome_row outcome_rows[] = {
    {"protect", [] { return protect_folder(L"C:\\Data"); },
     R"({"parameters":{"folderName":"C:\\Data"},"serviceCall":3})"},
    {"protectAs", [] { return protect_folder_as(L"C:\\Data", L"{obj}\\\u00E9"); },
     "{\"parameters\":{\"folderName\":\"C:\\\\Data\",\"objPath\":\"{obj}\\\\\xC3\xA9\"},\"serviceCall\":28}"},
    {"unprotect", [] { return unprotect_folder(L"C:\\Data"); },
     R"({"parameters":{"folderName":"C:\\Data"},"serviceCall":14})"},
    {"exportDeletedFiles", [] { return export_folder(L"C:\\Data", export_kind::deleted_files); },
     R"({"parameters":{"exportType":"recycleBin","folderName":"C:\\Data"},"serviceCall":44})"},
    {"exportChronels", [] { return export_folder(L"C:\\Data", export_kind::chronels); },
     R"({"parameters":{"exportType":"chronels","folderName":"C:\\Data"},"serviceCall":44})"},
};

INSTANTIATE_TEST_SUITE_P(Rows, OutcomeCalls, testing::ValuesIn(outcome_rows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
