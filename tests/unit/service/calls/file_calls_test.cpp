#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "service/calls.h"
#include "service/file_exchange.h"
#include "testkit/files/temp_file.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/service/calls/calls_fixture.h"

namespace {

using namespace ov::service;  // the functions under test
using ov::json;
using ov::test::import_patch;
using ov::test::temp_file;

/// The user's temporary folder as it stands in a request.
std::string temp_folder_json() {
    return json(to_utf8(temp_folder())).dump();
}

struct text_row {
    const char* name;
    std::function<std::string()> call;
    std::function<std::string()> request;
};

/// The calls whose answer is the text of the driver's file.
class FileTextCalls : public ov::test::service_calls_test, public testing::WithParamInterface<text_row> {};

TEST_P(FileTextCalls, request_names_the_temporary_folder) {
    EXPECT_EQ(GetParam().call(), "");
    EXPECT_EQ(sent(), GetParam().request());
}

TEST_P(FileTextCalls, file_is_passed_on_unparsed_and_deleted) {
    const temp_file file("not json, \xC3\xA9\r\n");
    answer_with_file(file.path());
    EXPECT_EQ(GetParam().call(), "not json, \xC3\xA9\r\n");
    EXPECT_FALSE(file.exists());
}

TEST_P(FileTextCalls, file_with_a_nul_ends_there) {
    const temp_file file(std::string_view("ab\0cd", 5));
    answer_with_file(file.path());
    EXPECT_EQ(GetParam().call(), "ab");
    EXPECT_FALSE(file.exists());
}

TEST_P(FileTextCalls, largest_file_comes_whole) {
    const temp_file file(std::string(static_cast<std::size_t>(driver_file_limit_bytes), 'x'));
    answer_with_file(file.path());
    EXPECT_EQ(GetParam().call().size(), 0x1400000u);
    EXPECT_FALSE(file.exists());
}

TEST_P(FileTextCalls, file_that_cannot_be_used_is_empty_and_deleted) {
    const temp_file empty("");
    answer_with_file(empty.path());
    EXPECT_EQ(GetParam().call(), "");
    EXPECT_FALSE(empty.exists());

    const temp_file large("x");
    large.resize(driver_file_limit_bytes + 1);
    answer_with_file(large.path());
    EXPECT_EQ(GetParam().call(), "");
    EXPECT_FALSE(large.exists());
}

TEST_P(FileTextCalls, missing_file_is_empty) {
    answer_with_file(temp_folder() + L"no such file.orv");
    EXPECT_EQ(GetParam().call(), "");
}

std::vector<std::wstring> deleted;
BOOL WINAPI note_deleted(LPCWSTR path) {
    deleted.emplace_back(path);
    return FALSE;
}

TEST_P(FileTextCalls, empty_path_is_tried_and_deleted_as_any_other) {
    answer_with_file(L"");
    deleted.clear();
    const import_patch<decltype(DeleteFileW)> patch(GetModuleHandleW(nullptr), "kernel32.dll", "DeleteFileW",
                                                    &note_deleted);
    EXPECT_EQ(GetParam().call(), "");
    EXPECT_EQ(deleted, std::vector<std::wstring>{L""});
}

TEST_P(FileTextCalls, failure_is_empty_and_deletes_nothing) {
    const temp_file file("abc");
    const std::string path = json(to_utf8(file.path())).dump();
    for (const std::string& reply :
         {R"({"statusCode":1,"data":{"objPath":)" + path + "}}", R"({"data":{"objPath":)" + path + "}}",
          R"({"statusCode":-2,"data":{"objPath":)" + path + "}}",
          R"({"statusCode":0,"objPath":)" + path + "}", R"({"statusCode":0,"data":[)" + path + "]}",
          R"({"statusCode":0,"data":)" + path + "}", R"({"statusCode":0,"data":{"objPath":[)" + path + "]}}",
          R"({"statusCode":0,"data":{"objPath":"")" + path, std::string(R"({"statusCode":0,"data":{}})"),
          std::string(R"({"statusCode":0})"), std::string()}) {
        answer(reply);
        EXPECT_EQ(GetParam().call(), "") << reply;
    }
    serve_nothing();
    EXPECT_EQ(GetParam().call(), "");
    EXPECT_TRUE(file.exists());
}

const text_row text_rows[] = {
    {"chronels", [] { return get_file_chronels(L"C:\\\u00E9.txt"); },
     [] {
         return "{\"parameters\":{\"fileName\":\"C:\\\\\xC3\xA9.txt\",\"tempFolder\":" + temp_folder_json() +
                "},\"serviceCall\":46}";
     }},
    {"protectedFolders", [] { return get_protected_folders(); },
     [] { return "{\"parameters\":{\"tempFolder\":" + temp_folder_json() + "},\"serviceCall\":35}"; }},
};

INSTANTIATE_TEST_SUITE_P(Rows, FileTextCalls, testing::ValuesIn(text_rows),
                         [](const auto& row) { return std::string(row.param.name); });

class GetRestoreFolders : public ov::test::service_calls_test {
  protected:
    /// What the call makes of a file with this text, which must be gone afterwards.
    std::vector<std::wstring> folders_of(std::string_view file_text) {
        const temp_file file(file_text);
        answer_with_file(file.path());
        const auto folders = get_restore_folders(1, 2);
        EXPECT_FALSE(file.exists());
        return folders;
    }
};

TEST_F(GetRestoreFolders, request_names_point_and_temporary_folder) {
    EXPECT_TRUE(get_restore_folders(9007199254740993, -4).empty());
    EXPECT_EQ(sent(), R"({"parameters":{"createdOn":9007199254740993,"sequenceNumber":-4,"tempFolder":)" +
                          temp_folder_json() + "},\"serviceCall\":37}");
}

TEST_F(GetRestoreFolders, list_comes_in_its_order) {
    const std::vector<std::wstring> expected = {L"D:\\b", L"C:\\\u6587"};
    EXPECT_EQ(folders_of("{\"restoreFolders\":[\"D:\\\\b\",\"C:\\\\\xE6\x96\x87\"]}"), expected);
}

TEST_F(GetRestoreFolders, list_of_the_wrong_shape_is_empty) {
    for (const char* text :
         {"{}", "[]", "x", R"({"restoreFolders":"C:\\"})", R"({"restoreFolders":["C:\\",1]})"}) {
        EXPECT_TRUE(folders_of(text).empty()) << text;
    }
}

TEST_F(GetRestoreFolders, list_nested_a_hundred_thousand_levels_is_empty) {
    EXPECT_TRUE(folders_of("{\"restoreFolders\":" + std::string(100000, '[') + std::string(100000, ']') + "}")
                    .empty());
}

TEST_F(GetRestoreFolders, largest_list_comes_whole) {
    std::string text = "{\"restoreFolders\":[\"C:\\\\0\"";
    const std::string entry = ",\"C:\\\\" + std::string(200, 'x') + "\"";
    std::size_t count = 1;
    for (; text.size() + entry.size() + 2 <= static_cast<std::size_t>(driver_file_limit_bytes); ++count) {
        text += entry;
    }
    text += "]}";
    EXPECT_EQ(folders_of(text).size(), count);
}

TEST_F(GetRestoreFolders, failure_is_empty) {
    for (const char* reply : {R"({"statusCode":0})", R"({"statusCode":1,"data":{}})",
                              R"({"statusCode":0,"data":{}})", R"({"data":{}})", "no json"}) {
        answer(reply);
        EXPECT_TRUE(get_restore_folders(1, 2).empty()) << reply;
    }
    serve_nothing();
    EXPECT_TRUE(get_restore_folders(1, 2).empty());
}

}  // namespace
