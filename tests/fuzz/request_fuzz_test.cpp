#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ovufc/json_bounded.h"
#include "service/envelope.h"
#include "service/text.h"
#include "tests/fuzz/mutator.h"

/// Broken paths and chronel records on their way into a request.
namespace {

using namespace ov::service;  // the functions under test
using ov::json;
using ov::test::mutator;

TEST(RequestFuzz, any_path_becomes_a_request_that_reads_back) {
    mutator choices(10, {"x"}, {"x"});
    for (int round = 0; round != 20000; ++round) {
        std::wstring path(choices.below(40), L'\0');
        for (wchar_t& unit : path) {
            // One unit in four from the surrogates, which are mostly alone.
            unit = static_cast<wchar_t>(choices.below(4) == 0 ? 0xD800 + choices.below(0x800)
                                                              : 1 + choices.below(0xFFFF));
        }
        const std::string text =
            request_text(service_call::protect_folder, json({{"folderName", to_utf8(path)}}));
        const json request = json::parse(text);
        EXPECT_EQ(request.at("serviceCall"), 3);
        EXPECT_EQ(request.at("parameters").at("folderName"), to_utf8(path));
        EXPECT_EQ(request.dump(), text);
        EXPECT_FALSE(text.find('\0') != std::string::npos || text.find('\n') != std::string::npos);
    }
}

TEST(RequestFuzz, any_record_is_refused_or_can_be_sent) {
    mutator records(11, {R"({"fileName":"C:\\f","cloneFileName":"c\u00e9","type":3,"more":[1,{"a":null}]})"},
                    {"\"", "\\ud83d\\ude00", "\\ud800", "\xC3\xA9", "\xFF", "1e999", "-0.0",
                     "18446744073709551615", std::string(300, '['), "null", "{}"});
    int sent = 0;
    for (int round = 0; round != 20000; ++round) {
        const std::string record = records.next();
        json value;
        try {
            value = ov::parse_bounded_or_throw(record);
        } catch (const json::exception&) {
            EXPECT_TRUE(ov::parse_bounded(record).is_discarded());
            continue;
        }
        EXPECT_EQ(json::parse(request_text(service_call::open_file_chronel, value)).at("parameters"), value);
        ++sent;
    }
    EXPECT_GT(sent, 100);
}

}  // namespace
