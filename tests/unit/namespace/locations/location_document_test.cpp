#include "namespace/locations/location_document.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace ov::name_space;
using names = std::vector<std::wstring_view>;

constexpr std::uint32_t all_folders = 255;

// The seven arrays, `folders` among them as given, the others empty but for what `rest` overrides.
std::string document_with_folders(const std::string& folders) {
    return R"({"hardDrive":{"folders":)" + folders +
           R"(},"mgmtCustom":[],"oneDrive":[],"google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})";
}

std::uint32_t mask_of(const std::string& text) {
    return read_location_document(text).user_folder_mask;
}

TEST(LocationDocument, empty_text_names_all_user_folders_and_no_items) {
    const auto document = read_location_document("");
    EXPECT_EQ(all_folders, document.user_folder_mask);
    EXPECT_FALSE(document.is_complete());
}

TEST(LocationDocument, all_seven_arrays_are_read_in_order) {
    const auto document = read_location_document(
        R"({"boxSyn":["b1","b2"],"dropBox":["d"],"google":["g"],"hardDrive":{"folders":["C:\\a","C:\\b"]},)"
        R"("mgmtCustom":["m"],"oneDrive":["o"],"oneDriveBusiness":["ob"],"other":["x"]})");
    EXPECT_TRUE(document.is_complete());
    EXPECT_EQ((names{L"C:\\a", L"C:\\b"}), document.local().names);
    EXPECT_EQ(names{L"m"}, document.lists[1].names);
    EXPECT_EQ(names{L"o"}, document.lists[2].names);
    EXPECT_EQ(names{L"g"}, document.lists[3].names);
    EXPECT_EQ((names{L"b1", L"b2"}), document.lists[4].names);
    EXPECT_EQ(names{L"d"}, document.lists[5].names);
    EXPECT_EQ(names{L"ob"}, document.lists[6].names);
    EXPECT_EQ(9u, document.entry_count());
    EXPECT_EQ(0u, document.user_folder_mask);
}

TEST(LocationDocument, rules_become_bits_and_not_items) {
    const auto document = read_location_document(document_with_folders(
        R"(["C:\\Users\\[^\\\\]*\\Desktop\\","D:\\x","c:\\users\\[^\\\\]*\\VIDEOS\\"])"));
    EXPECT_EQ(2u | 128u, document.user_folder_mask);
    EXPECT_EQ(names{L"D:\\x"}, document.local().names);
}

TEST(LocationDocument, desktop_rule_in_lower_case_is_the_desktop) {
    EXPECT_EQ(2u, mask_of(document_with_folders(R"(["c:\\users\\[^\\\\]*\\desktop\\"])")));
}

TEST(LocationDocument, rule_for_an_unknown_folder_is_neither_bit_nor_item) {
    const auto document =
        read_location_document(document_with_folders(R"(["C:\\Users\\[^\\\\]*\\Downloads\\"])"));
    EXPECT_EQ(0u, document.user_folder_mask);
    EXPECT_TRUE(document.local().names.empty());
    EXPECT_TRUE(document.is_complete());
}

TEST(LocationDocument, rule_with_an_embedded_nul_is_no_match) {
    EXPECT_EQ(0u, mask_of(document_with_folders(R"(["C:\\Users\\[^\\\\]*\\Desktop\\\u0000"])")));
    EXPECT_EQ(0u, mask_of(document_with_folders(R"(["C:\\Users\\[^\\\\]*\\Deskto\u0000\\"])")));
}

TEST(LocationDocument, no_folders_at_all_give_no_user_folder) {
    EXPECT_EQ(0u, mask_of(document_with_folders("[]")));
}

TEST(LocationDocument, mask_needs_the_local_folders_only) {
    const auto document =
        read_location_document(R"({"hardDrive":{"folders":["C:\\Users\\[^\\\\]*\\Music\\"]}})");
    EXPECT_EQ(32u, document.user_folder_mask);
    EXPECT_FALSE(document.is_complete());
}

TEST(LocationDocument, missing_array_makes_it_incomplete) {
    for (const std::string missing :
         {"mgmtCustom", "oneDrive", "google", "boxSyn", "dropBox", "oneDriveBusiness"}) {
        std::string text = document_with_folders(R"(["D:\\x"])");
        text.replace(text.find("\"" + missing + "\""), missing.size() + 2, "\"other\"");
        const auto document = read_location_document(text);
        EXPECT_FALSE(document.is_complete()) << missing;
        EXPECT_EQ(0u, document.user_folder_mask) << missing;
    }
}

TEST(LocationDocument, value_that_is_no_array_makes_it_incomplete) {
    for (const std::string value : {"null", "true", "1", "-1", "0.5", "\"x\"", "{}", "{\"a\":[\"x\"]}"}) {
        std::string text = document_with_folders("[]");
        const std::string old = R"("google":[])";
        text.replace(text.find(old), old.size(), "\"google\":" + value);
        EXPECT_FALSE(read_location_document(text).is_complete()) << value;
        EXPECT_EQ(0u, mask_of(text)) << value;
    }
}

TEST(LocationDocument, folders_of_a_wrong_type_give_all_user_folders_and_no_items) {
    for (const std::string value : {"null", "{}", "{\"a\":\"b\"}", "7", "\"text\"", "false"}) {
        const auto document = read_location_document(document_with_folders(value));
        EXPECT_EQ(all_folders, document.user_folder_mask) << value;
        EXPECT_FALSE(document.is_complete()) << value;
    }
}

TEST(LocationDocument, hard_drive_of_a_wrong_type_or_missing_gives_all_user_folders) {
    for (const std::string text :
         {R"({})", R"({"hardDrive":null})", R"({"hardDrive":["folders"]})", R"({"hardDrive":{}})",
          R"({"hardDrive":[{"folders":[]}]})", R"({"HardDrive":{"folders":[]}})",
          R"({"hardDrive":{"Folders":[]}})", R"({"folders":[]})", R"([])",
          R"([{"hardDrive":{"folders":[]}}])", R"("text")", "1", "null",
          R"({"x":{"hardDrive":{"folders":[]}}})", R"({"hardDrive":{"x":{"folders":[]}}})"}) {
        const auto document = read_location_document(text);
        EXPECT_EQ(all_folders, document.user_folder_mask) << text;
        EXPECT_FALSE(document.is_complete()) << text;
    }
}

TEST(LocationDocument, entry_that_is_no_string_breaks_its_array_there) {
    for (const std::string value : {"1", "null", "true", "1.5", "[\"in\"]", "{\"k\":\"in\"}", "[]", "{}"}) {
        const auto document = read_location_document(
            document_with_folders(R"(["D:\\x",)" + value + R"(,"D:\\y","C:\\Users\\[^\\\\]*\\Music\\"])"));
        EXPECT_TRUE(document.is_complete()) << value;
        EXPECT_TRUE(document.local().is_broken) << value;
        EXPECT_EQ(names{L"D:\\x"}, document.local().names) << value;
        EXPECT_EQ(all_folders, document.user_folder_mask) << value;
    }
}

TEST(LocationDocument, broken_cloud_array_leaves_the_mask_alone) {
    std::string text = document_with_folders(R"(["C:\\Users\\[^\\\\]*\\Music\\"])");
    const std::string old = R"("google":[])";
    text.replace(text.find(old), old.size(), R"("google":["g",5,"h"])");
    const auto document = read_location_document(text);
    EXPECT_EQ(32u, document.user_folder_mask);
    EXPECT_TRUE(document.lists[3].is_broken);
    EXPECT_EQ(names{L"g"}, document.lists[3].names);
}

TEST(LocationDocument, last_of_two_equal_keys_counts) {
    const auto document = read_location_document(
        R"({"hardDrive":{"folders":["C:\\Users\\[^\\\\]*\\Music\\","D:\\old",1]},"google":["old"],)"
        R"("google":["new"],"mgmtCustom":["kept"],"mgmtCustom":3,)"
        R"("hardDrive":{"folders":["C:\\Users\\[^\\\\]*\\Videos\\","D:\\older"],"folders":["D:\\new"]}})");
    EXPECT_EQ(names{L"new"}, document.lists[3].names);
    EXPECT_FALSE(document.lists[1].is_array);
    EXPECT_EQ(names{L"D:\\new"}, document.local().names);
    EXPECT_FALSE(document.local().is_broken);
    EXPECT_EQ(0u, document.user_folder_mask);
}

TEST(LocationDocument, later_hard_drive_without_folders_forgets_the_earlier) {
    EXPECT_EQ(all_folders, mask_of(R"({"hardDrive":{"folders":[]},"hardDrive":{}})"));
    EXPECT_EQ(all_folders, mask_of(R"({"hardDrive":{"folders":[]},"hardDrive":4})"));
}

TEST(LocationDocument, folders_of_an_object_after_the_hard_drive_are_not_its_own) {
    const auto document = read_location_document(
        R"({"hardDrive":{"folders":["C:\\mine"]},"x":{"folders":["C:\\not mine"]},"y":["folders"]})");
    EXPECT_EQ(document.local().names, names{L"C:\\mine"});
}

TEST(LocationDocument, malformed_text_gives_all_user_folders_and_no_items) {
    const std::string whole = document_with_folders(R"(["C:\\Users\\[^\\\\]*\\Music\\","D:\\x"])");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto document = read_location_document(std::string_view(whole).substr(0, size));
        EXPECT_EQ(all_folders, document.user_folder_mask) << size;
        EXPECT_FALSE(document.is_complete()) << size;
        EXPECT_EQ(0u, document.entry_count()) << size;
    }
    EXPECT_EQ(32u, mask_of(whole));
    EXPECT_EQ(all_folders, mask_of(whole + "x"));
}

TEST(LocationDocument, bytes_that_are_no_utf_8_make_it_malformed) {
    EXPECT_EQ(all_folders, mask_of(document_with_folders("[\"D:\\\\\xFF\"]")));
    EXPECT_EQ(all_folders, mask_of(document_with_folders(R"(["\ud800"])")));
}

TEST(LocationDocument, number_beyond_a_double_makes_it_malformed) {
    std::string text = document_with_folders("[]");
    text.insert(1, R"("n":1e999,)");
    EXPECT_EQ(all_folders, mask_of(text));
}

TEST(LocationDocument, names_are_converted_to_utf_16) {
    const auto document = read_location_document(document_with_folders(
        "[\"D:\\\\H\xC3\xA4user\",\"D:\\\\\\u65e5\\ud83d\\ude00\",\"\",\"cut\\u0000off\"]"));
    EXPECT_EQ((names{L"D:\\H\x00E4user", L"D:\\\x65E5\xD83D\xDE00", L"", L"cut"}), document.local().names);
}

TEST(LocationDocument, byte_order_mark_is_taken) {
    EXPECT_EQ(0u, mask_of("\xEF\xBB\xBF" + document_with_folders("[]")));
}

TEST(LocationDocument, nesting_without_end_is_refused) {
    const std::string deep(1'000'000, '[');
    EXPECT_EQ(all_folders, mask_of(deep));
    EXPECT_EQ(all_folders, mask_of(R"({"hardDrive":{"folders":)" + deep));
    std::string closed = document_with_folders("[]");
    closed.insert(1, R"("x":)" + std::string(100'000, '[') + std::string(100'000, ']') + ",");
    EXPECT_EQ(all_folders, mask_of(closed));
    std::string at_the_end = document_with_folders("[]");
    at_the_end.insert(at_the_end.rfind('}'), R"(,"x":)" + std::string(257, '[') + std::string(257, ']'));
    EXPECT_EQ(all_folders, mask_of(at_the_end));
}

TEST(LocationDocument, nesting_within_reason_is_walked_over) {
    std::string text = document_with_folders("[]");
    text.insert(1, R"("x":)" + std::string(200, '[') + std::string(200, ']') + ",");
    EXPECT_EQ(0u, mask_of(text));
    EXPECT_TRUE(read_location_document(text).is_complete());
}

}  // namespace
