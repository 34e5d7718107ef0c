#include "service/reply_readers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using ov::service::reply;

reply of(std::string_view text) {
    return reply::parse(text.data(), text.size());
}

reply no_answer() {
    return reply::failed(reply::transact_failed);
}

/// What a reply leaves of the two flags, both set beforehand to `before`.
struct folder_status {
    bool read;
    bool is_protected;
    bool restricted;
    bool operator==(const folder_status&) const = default;
};

folder_status status_of(const reply& answer, bool before) {
    folder_status status{false, before, before};
    status.read = read_folder_status(answer, status.is_protected, status.restricted);
    return status;
}

constexpr folder_status failed_untouched(bool before) {
    return {false, before, before};
}

TEST(ReadOutcome, status_0_with_data_is_ok) {
    for (const char* text : {R"({"statusCode":0,"data":{}})", R"({"statusCode":0,"data":null})",
                             R"({"statusCode":0,"data":"x"})", R"({"statusCode":0.9,"data":{}})",
                             R"({"statusCode":-0.9,"data":[]})"}) {
        EXPECT_EQ(read_outcome(of(text)), S_OK) << text;
    }
}

TEST(ReadOutcome, status_0_without_data_is_unexpected) {
    EXPECT_EQ(read_outcome(of(R"({"statusCode":0})")), E_UNEXPECTED);
}

TEST(ReadOutcome, any_other_reply_is_unexpected) {
    EXPECT_EQ(read_outcome(no_answer()), E_UNEXPECTED);
    for (const char* text :
         {R"({"statusCode":1,"data":{}})", R"({"statusCode":-2,"data":{}})", R"({"data":{}})",
          R"({"statusCode":"0","data":{}})", R"({"statusCode":true,"data":{}})",
          R"({"statusCode":1e300,"data":{}})", "[]", "", "garbage"}) {
        EXPECT_EQ(read_outcome(of(text)), E_UNEXPECTED) << text;
    }
}

TEST(ReadFolderStatus, without_a_level_leaves_restricted_alone) {
    for (const bool before : {false, true}) {
        EXPECT_EQ(status_of(of(R"({"statusCode":0,"data":{"protectedFolder":true}})"), before),
                  (folder_status{true, true, before}));
        EXPECT_EQ(status_of(of(R"({"statusCode":0,"data":{"protectedFolder":false}})"), before),
                  (folder_status{true, false, before}));
    }
}

TEST(ReadFolderStatus, level_restricted_sets_restricted) {
    EXPECT_EQ(
        status_of(of(R"({"statusCode":0,"data":{"protectedFolder":false,"uiLevel":"restricted"}})"), false),
        (folder_status{true, false, true}));
}

TEST(ReadFolderStatus, any_other_level_clears_restricted) {
    for (const char* level : {"", "full", "Restricted", "RESTRICTED", "restricted ", "restricted\\u0000"}) {
        const std::string text =
            std::string(R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":")") + level + "\"}}";
        EXPECT_EQ(status_of(of(text), true), (folder_status{true, true, false})) << level;
    }
}

TEST(ReadFolderStatus, level_that_is_no_string_fails_with_what_was_read) {
    for (const char* level : {"1", "null", "true", "[\"restricted\"]", "{}"}) {
        const std::string text =
            std::string(R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":)") + level + "}}";
        EXPECT_EQ(status_of(of(text), false), (folder_status{false, true, false})) << level;
    }
}

TEST(ReadFolderStatus, any_other_reply_fails_with_nothing_read) {
    for (const bool before : {false, true}) {
        EXPECT_EQ(status_of(no_answer(), before), failed_untouched(before));
        for (const char* text :
             {R"({"statusCode":1,"data":{"protectedFolder":true,"uiLevel":"restricted"}})",
              R"({"statusCode":-2,"data":{"protectedFolder":true}})", R"({"statusCode":0})",
              R"({"data":{"protectedFolder":true}})", R"({"statusCode":0,"data":{}})",
              R"({"statusCode":0,"data":{"uiLevel":"restricted"}})", R"({"statusCode":0,"data":[true]})",
              R"({"statusCode":0,"data":"protectedFolder"})", R"({"statusCode":0,"data":null})",
              R"({"statusCode":0,"data":{"protectedFolder":1}})",
              R"({"statusCode":0,"data":{"protectedFolder":"true"}})",
              R"({"statusCode":0,"data":{"protectedFolder":null}})",
              R"({"statusCode":0,"protectedFolder":true})", "null", ""}) {
            EXPECT_EQ(status_of(of(text), before), failed_untouched(before)) << text;
        }
    }
}

TEST(ReadFilePath, path_is_converted) {
    EXPECT_EQ(
        read_file_path(of("{\"statusCode\":0,\"data\":{\"objPath\":\"C:\\\\J\xC3\xB6rg\\\\\\u6587.tmp\"}}")),
        L"C:\\J\u00F6rg\\\u6587.tmp");
}

TEST(ReadFilePath, path_with_a_nul_ends_there) {
    EXPECT_EQ(read_file_path(of(R"({"statusCode":0,"data":{"objPath":"C:\\a\u0000b"}})")), L"C:\\a");
}

TEST(ReadFilePath, empty_path_is_a_path) {
    EXPECT_EQ(read_file_path(of(R"({"statusCode":0,"data":{"objPath":""}})")), L"");
}

TEST(ReadFilePath, any_other_reply_is_none) {
    EXPECT_EQ(read_file_path(no_answer()), std::nullopt);
    for (const char* text :
         {R"({"statusCode":1,"data":{"objPath":"C:\\a"}})", R"({"statusCode":0,"data":{}})",
          R"({"statusCode":0})", R"({"data":{"objPath":"C:\\a"}})", R"({"statusCode":0,"data":["objPath"]})",
          R"({"statusCode":0,"data":"objPath"})", R"({"statusCode":0,"data":null})",
          R"({"statusCode":0,"data":{"objPath":1}})", R"({"statusCode":0,"data":{"objPath":null}})",
          R"({"statusCode":0,"data":{"objPath":["C:\\a"]}})", R"({"statusCode":0,"data":{"objPath":{}}})",
          R"({"statusCode":0,"data":{"objPath":true}})"}) {
        EXPECT_EQ(read_file_path(of(text)), std::nullopt) << text;
    }
}

TEST(ReadRestoreFolders, list_comes_in_its_order) {
    const std::vector<std::wstring> expected = {L"D:\\b", L"C:\\J\u00F6rg", L""};
    EXPECT_EQ(ov::service::read_restore_folders(
                  "{\"restoreFolders\":[\"D:\\\\b\",\"C:\\\\J\xC3\xB6rg\",\"\"],\"x\":1}"),
              expected);
}

TEST(ReadRestoreFolders, any_other_text_is_empty) {
    for (const char* text :
         {"", "x", "[]", "[\"C:\\\\a\"]", "{}", R"({"restoreFolders":[]})", R"({"restoreFolders":{}})",
          R"({"restoreFolders":"C:\\a"})", R"({"restoreFolders":null})", R"({"restoreFolders":["C:\\a",1]})",
          R"({"restoreFolders":["C:\\a",null]})", R"({"restoreFolders":["C:\\a",["C:\\b"]]})",
          R"({"restoreFolders":["C:\\a")", "{\"restoreFolders\":[\"C:\\\\a\xFF\"]}"}) {
        EXPECT_TRUE(ov::service::read_restore_folders(text).empty()) << text;
    }
}

struct restore_point {
    bool found;
    std::int64_t createdOn;
    std::int64_t sequenceNumber;
    bool operator==(const restore_point&) const = default;
};

restore_point point_of(const reply& answer) {
    restore_point point{false, 11, 22};
    point.found = read_restore_point(answer, point.createdOn, point.sequenceNumber);
    return point;
}

constexpr restore_point none_untouched{false, 11, 22};

TEST(ReadRestorePoint, one_or_more_gives_the_first) {
    EXPECT_EQ(
        point_of(of(R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":-6}]}})")),
        (restore_point{true, 5, -6}));
    EXPECT_EQ(point_of(of(R"({"statusCode":0,"data":{"restorePoints":[
                  {"createdOn":9223372036854775807,"sequenceNumber":2.9,"x":0},{"createdOn":1,"sequenceNumber":1}]}})")),
              (restore_point{true, 9223372036854775807, 2}));
}

TEST(ReadRestorePoint, later_elements_are_not_looked_at) {
    EXPECT_EQ(
        point_of(
            of(R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":6},null,7]}})")),
        (restore_point{true, 5, 6}));
}

TEST(ReadRestorePoint, any_other_reply_leaves_the_values_alone) {
    EXPECT_EQ(point_of(no_answer()), none_untouched);
    for (
        const char* text :
        {R"({"statusCode":0,"data":{"restorePoints":[]}})", R"({"statusCode":0,"data":{}})",
         R"({"statusCode":0})",
         R"({"statusCode":3,"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":6}]}})",
         R"({"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":6}]}})",
         R"({"statusCode":0,"data":{"restorePoints":{"0":{"createdOn":5,"sequenceNumber":6}}}})",
         R"({"statusCode":0,"data":{"restorePoints":null}})",
         R"({"statusCode":0,"data":{"restorePoints":"[]"}})",
         R"({"statusCode":0,"data":[{"createdOn":5,"sequenceNumber":6}]})",
         R"({"statusCode":0,"data":{"restorePoints":[5,6]}})",
         R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":5}]}})",
         R"({"statusCode":0,"data":{"restorePoints":[{"sequenceNumber":6}]}})",
         R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":"5","sequenceNumber":6}]}})",
         R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":true}]}})",
         R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":1e300,"sequenceNumber":6}]}})",
         R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":18446744073709551616}]}})"}) {
        EXPECT_EQ(point_of(of(text)), none_untouched) << text;
    }
}

TEST(ReadRestoreRefused, status_that_is_not_0_is_a_refusal) {
    for (const char* text : {R"({"statusCode":5})", R"({"statusCode":-2,"data":{}})", R"({"statusCode":1.5})",
                             R"({"statusCode":1e300})"}) {
        EXPECT_TRUE(read_restore_refused(of(text))) << text;
    }
}

TEST(ReadRestoreRefused, any_other_reply_is_none) {
    EXPECT_FALSE(read_restore_refused(no_answer()));
    for (const char* text :
         {R"({"statusCode":0})", R"({"statusCode":0.9})", R"({"data":{}})", R"({"statusCode":"5"})",
          R"({"statusCode":true})", R"({"statusCode":null})", "[5]", "", "garbage"}) {
        EXPECT_FALSE(read_restore_refused(of(text))) << text;
    }
}

TEST(ReadLastTimestamp, status_minus_2_gives_the_timestamp) {
    EXPECT_EQ(read_last_timestamp(of(R"({"statusCode":-2,"data":{"lastTimestamp":132539328000000000}})")),
              132539328000000000u);
    EXPECT_EQ(read_last_timestamp(of(R"({"statusCode":-2,"data":{"lastTimestamp":0}})")), 0u);
    EXPECT_EQ(read_last_timestamp(of(R"({"statusCode":-2.5,"data":{"lastTimestamp":7.9}})")), 7u);
}

// A file time has 64 bits without a sign.
TEST(ReadLastTimestamp, upper_half_of_the_file_times_is_read) {
    EXPECT_EQ(read_last_timestamp(of(R"({"statusCode":-2,"data":{"lastTimestamp":9223372036854775808}})")),
              0x8000000000000000u);
    EXPECT_EQ(read_last_timestamp(of(R"({"statusCode":-2,"data":{"lastTimestamp":18446744073709551615}})")),
              0xFFFFFFFFFFFFFFFFu);
}

TEST(ReadLastTimestamp, any_other_reply_is_none) {
    EXPECT_EQ(read_last_timestamp(no_answer()), std::nullopt);
    for (const char* text :
         {R"({"statusCode":0,"data":{"lastTimestamp":5}})", R"({"statusCode":2,"data":{"lastTimestamp":5}})",
          R"({"statusCode":-3,"data":{"lastTimestamp":5}})", R"({"data":{"lastTimestamp":5}})",
          R"({"statusCode":-2})", R"({"statusCode":-2,"data":{}})", R"({"statusCode":-2,"data":[5]})",
          R"({"statusCode":-2,"data":{"lastTimestamp":"5"}})",
          R"({"statusCode":-2,"data":{"lastTimestamp":null}})",
          R"({"statusCode":-2,"data":{"lastTimestamp":true}})",
          R"({"statusCode":-2,"data":{"lastTimestamp":1e300}})", "[]", ""}) {
        EXPECT_EQ(read_last_timestamp(of(text)), std::nullopt) << text;
    }
}

}  // namespace
