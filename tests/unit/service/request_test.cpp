#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "module/state/module_state.h"
#include "service/envelope.h"
#include "service/text.h"
#include "testkit/process/module_attach.h"

namespace {

using ov::json;
using ov::service::frame_request;
using ov::service::request_text;
using ov::service::service_call;
using ov::service::to_utf8;

TEST(RequestText, call_without_arguments_sends_an_empty_object) {
    EXPECT_EQ(request_text(service_call::get_restore_points, json::object()),
              R"({"parameters":{},"serviceCall":36})");
}

TEST(RequestText, parameters_are_compact_and_in_ascending_order) {
    json parameters = json::object();
    parameters["sequenceNumber"] = std::int64_t{-1};
    parameters["tempFolder"] = "C:\\Temp\\";
    parameters["createdOn"] = std::int64_t{9007199254740993};
    EXPECT_EQ(request_text(service_call::get_restore_folders, parameters),
              R"({"parameters":{"createdOn":9007199254740993,"sequenceNumber":-1,"tempFolder":"C:\\Temp\\"},)"
              R"("serviceCall":37})");
}

TEST(RequestText, characters_beyond_ascii_travel_as_raw_utf_8) {
    const json parameters = {{"folderName", to_utf8(L"C:\\J\u00F6rg\\\u6587\\\U0001F4C1")}};
    EXPECT_EQ(request_text(service_call::get_folder_status, parameters),
              "{\"parameters\":{\"folderName\":\"C:\\\\J\xC3\xB6rg\\\\\xE6\x96\x87\\\\\xF0\x9F\x93\x81\"},"
              "\"serviceCall\":13}");
}

TEST(RequestText, path_with_a_lone_surrogate_is_sent_with_a_replacement_character) {
    const json parameters = {{"folderName", to_utf8(L"C:\\\xD800")}};
    EXPECT_EQ(request_text(service_call::protect_folder, parameters),
              "{\"parameters\":{\"folderName\":\"C:\\\\\xEF\xBF\xBD\"},\"serviceCall\":3}");
}

TEST(RequestText, bytes_that_are_not_utf_8_are_refused) {
    const json parameters = {{"folderName", "C:\\\xFF"}};
    EXPECT_THROW(static_cast<void>(request_text(service_call::protect_folder, parameters)), json::type_error);
}

TEST(ServiceCall, numbers_are_those_of_the_driver) {
    EXPECT_EQ(static_cast<int>(service_call::protect_folder), 3);
    EXPECT_EQ(static_cast<int>(service_call::get_folder_status), 13);
    EXPECT_EQ(static_cast<int>(service_call::unprotect_folder), 14);
    EXPECT_EQ(static_cast<int>(service_call::protect_folder_as), 28);
    EXPECT_EQ(static_cast<int>(service_call::get_protected_folders), 35);
    EXPECT_EQ(static_cast<int>(service_call::get_restore_points), 36);
    EXPECT_EQ(static_cast<int>(service_call::get_restore_folders), 37);
    EXPECT_EQ(static_cast<int>(service_call::restore_from_point), 39);
    EXPECT_EQ(static_cast<int>(service_call::restore_file_chronel), 42);
    EXPECT_EQ(static_cast<int>(service_call::export_folder), 44);
    EXPECT_EQ(static_cast<int>(service_call::get_last_timestamp), 45);
    EXPECT_EQ(static_cast<int>(service_call::get_file_chronels), 46);
    EXPECT_EQ(static_cast<int>(service_call::open_file_chronel), 47);
}

TEST(FrameRequest, header_names_process_thread_and_session) {
    const orv_request request = frame_request("{}");
    EXPECT_EQ(request.process_id, GetCurrentProcessId());
    EXPECT_EQ(request.thread_id, GetCurrentThreadId());
    EXPECT_EQ(request.session_id, ov::module_state::current_session_id);
}

// They were taken when the module was loaded, and nobody asks the system again.
TEST(FrameRequest, process_and_session_are_those_of_the_attach) {
    ov::module_state::current_process_id = 4711;
    ov::module_state::current_session_id = 9;
    const orv_request request = frame_request("{}");
    ov::module_state::record_process_attach(GetModuleHandleW(nullptr));
    EXPECT_EQ(request.process_id, 4711u);
    EXPECT_EQ(request.session_id, 9u);
}

TEST(FrameRequest, short_text_is_followed_by_zeros) {
    const orv_request request = frame_request("{}");
    EXPECT_EQ(std::string(request.text, sizeof(request.text)), "{}" + std::string(2046, '\0'));
}

TEST(FrameRequest, text_of_2047_bytes_is_whole) {
    const std::string text(2047, 'x');
    EXPECT_EQ(std::string(frame_request(text).text), text);
}

TEST(FrameRequest, longer_text_is_cut_at_2047_bytes) {
    for (const std::size_t size : {2048u, 2049u, 100000u}) {
        const orv_request request = frame_request(std::string(size, 'x'));
        EXPECT_EQ(std::string(request.text, sizeof(request.text)), std::string(2047, 'x') + '\0') << size;
    }
}

}  // namespace
