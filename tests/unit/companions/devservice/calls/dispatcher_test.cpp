#include "companions/devservice/calls/dispatcher.h"

#include "ovufc/ipc/drvport/wire.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class Dispatcher : public vault_fixture {
  protected:
    int status_for(const std::string& text) {
        const std::string reply = answer_request(context, text);
        EXPECT_LE(reply.size(), ORV_REPLY_LIMIT_BYTES);
        const json parsed = json::parse(reply);
        EXPECT_TRUE(parsed.at("data").is_object());
        return parsed.at("statusCode").get<int>();
    }
};

TEST_F(Dispatcher, text_that_is_no_request_gets_status_1) {
    for (const std::string& text :
         {std::string(), std::string("{"), std::string("null"), std::string("[]"), std::string("{}"),
          std::string(2048, '['), std::string(2048, '{'), std::string("\xff\xfe"), std::string("\"\xc3\""),
          std::string(R"({"serviceCall":13})"), std::string(R"({"parameters":null,"serviceCall":13})"),
          std::string(R"({"parameters":{},"serviceCall":"13"})"),
          std::string(R"({"parameters":{},"serviceCall":1e999})"),
          std::string(R"({"parameters":[],"serviceCall":13})")}) {
        EXPECT_EQ(status_for(text), 1) << text.substr(0, 60);
    }
}

TEST_F(Dispatcher, request_that_was_cut_gets_status_1) {
    const std::string whole =
        json{{"parameters", {{"folderName", "C:\\" + std::string(3000, 'x')}}}, {"serviceCall", 13}}.dump();
    EXPECT_EQ(status_for(whole.substr(0, 2047)), 1);
}

TEST_F(Dispatcher, text_ends_at_its_first_nul) {
    std::string padded = R"({"parameters":{},"serviceCall":36})";
    padded.resize(ORV_REQUEST_TEXT_BYTES, '\0');
    EXPECT_EQ(status_for(padded), 0);
}

TEST_F(Dispatcher, unknown_number_gets_status_2) {
    for (const int number : {0, -1, 1, 12, 48, 1'000'000}) {
        EXPECT_EQ(status_of_reply(call(service_call{number}, json::object())), 2) << number;
    }
    EXPECT_EQ(status_for(R"({"parameters":{},"serviceCall":18446744073709551615})"), 2);
}

TEST_F(Dispatcher, every_call_with_parameters_refuses_to_do_without) {
    for (const int number : {3, 13, 14, 28, 35, 37, 39, 42, 44, 46, 47}) {
        EXPECT_EQ(status_of_reply(call(service_call{number}, json::object())), 1) << number;
    }
}

TEST_F(Dispatcher, every_call_refuses_parameters_of_the_wrong_type) {
    for (const json& value :
         {json(nullptr), json(1.5), json(true), json::array(), json::object(), json("a\0b")}) {
        const json parameters = {{"folderName", value},    {"objPath", value},      {"exportType", value},
                                 {"fileName", value},      {"tempFolder", value},   {"usedFileName", value},
                                 {"cloneFileName", value}, {"sequenceNumber", "x"}, {"createdOn", value}};
        for (const int number : {3, 13, 14, 28, 35, 37, 39, 42, 44, 46, 47}) {
            EXPECT_EQ(status_of_reply(call(service_call{number}, parameters)), 1) << number << ' ' << value;
        }
    }
}

TEST_F(Dispatcher, path_with_an_embedded_nul_is_a_bad_request) {
    EXPECT_EQ(status_for(R"({"parameters":{"folderName":"C:\\a\u0000b"},"serviceCall":13})"), 1);
}

TEST_F(Dispatcher, reply_is_compact_with_data_before_status_code) {
    EXPECT_EQ(answer_request(context, R"({"parameters":{},"serviceCall":36})"),
              R"({"data":{"restorePoints":[]},"statusCode":0})");
}

TEST_F(Dispatcher, reply_that_clients_would_cut_becomes_a_failure) {
    reply large;
    large.data["text"] = std::string(2048, 'x');
    EXPECT_EQ(reply_text(large), R"({"data":{},"statusCode":7})");
}

TEST_F(Dispatcher, each_call_is_logged_with_its_status) {
    std::vector<std::string> lines;
    context.log = [&](const std::string& line) { lines.push_back(line); };
    static_cast<void>(call(service_call::get_restore_points, json::object()));
    EXPECT_EQ(lines, std::vector<std::string>{"get_restore_points -> 0"});
}

}  // namespace
}  // namespace ov::devservice
