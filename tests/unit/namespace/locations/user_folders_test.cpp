#include "namespace/locations/user_folders.h"

#include <knownfolders.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace {

using namespace ov::name_space;

struct expectation {
    std::uint32_t bit;
    const char* rule;
    const KNOWNFOLDERID& folder;
};

const expectation expected[] = {
    {1, "C:\\Users\\[^\\\\]*\\Documents\\", FOLDERID_Documents},
    {2, "C:\\Users\\[^\\\\]*\\Desktop\\", FOLDERID_Desktop},
    {4, "C:\\Users\\[^\\\\]*\\Pictures\\", FOLDERID_Pictures},
    {8, "C:\\Users\\[^\\\\]*\\3D Objects\\", FOLDERID_Objects3D},
    {16, "C:\\Users\\[^\\\\]*\\Contacts\\", FOLDERID_Contacts},
    {32, "C:\\Users\\[^\\\\]*\\Music\\", FOLDERID_Music},
    {64, "C:\\Users\\[^\\\\]*\\Saved Games\\", FOLDERID_SavedGames},
    {128, "C:\\Users\\[^\\\\]*\\Videos\\", FOLDERID_Videos},
};

TEST(UserFolders, each_rule_has_its_bit_and_folder) {
    for (const expectation& row : expected) {
        EXPECT_EQ(row.bit, user_folder_bit_of_rule(row.rule)) << row.rule;
        const auto& all = user_folders();
        const auto found =
            std::find_if(all.begin(), all.end(), [&](const auto& f) { return f.bit == row.bit; });
        ASSERT_NE(all.end(), found);
        EXPECT_TRUE(row.folder == *found->known_folder) << row.rule;
    }
}

TEST(UserFolders, letter_case_of_a_rule_does_not_count) {
    for (const expectation& row : expected) {
        std::string rule = row.rule;
        std::transform(rule.begin(), rule.end(), rule.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        EXPECT_EQ(row.bit, user_folder_bit_of_rule(rule));
        std::transform(rule.begin(), rule.end(), rule.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        EXPECT_EQ(row.bit, user_folder_bit_of_rule(rule));
    }
}

TEST(UserFolders, rule_is_compared_with_its_whole_length) {
    const std::string rule = expected[0].rule;
    EXPECT_EQ(0u, user_folder_bit_of_rule(rule.substr(0, rule.size() - 1)));
    EXPECT_EQ(0u, user_folder_bit_of_rule(rule + "x"));
    EXPECT_EQ(0u, user_folder_bit_of_rule(" " + rule));
    EXPECT_EQ(0u, user_folder_bit_of_rule(""));
}

TEST(UserFolders, rule_with_a_nul_inside_matches_nothing) {
    std::string rule = expected[1].rule;
    rule.push_back('\0');
    EXPECT_EQ(0u, user_folder_bit_of_rule(rule));
    rule.pop_back();
    rule[20] = '\0';
    EXPECT_EQ(0u, user_folder_bit_of_rule(rule));
}

TEST(UserFolders, letters_that_only_some_locale_folds_match_nothing) {
    // A Kelvin sign and a long s, which lower- or upper-case to ASCII letters in Unicode.
    EXPECT_EQ(0u, user_folder_bit_of_rule("C:\\Users\\[^\\\\]*\\De\xE2\x84\xAA"
                                          "top\\"));
    EXPECT_EQ(0u, user_folder_bit_of_rule("C:\\U\xC5\xBF"
                                          "ers\\[^\\\\]*\\Desktop\\"));
}

TEST(UserFolders, rule_is_never_taken_for_an_expression) {
    EXPECT_EQ(0u, user_folder_bit_of_rule("C:\\Users\\anna\\Desktop\\"));
    EXPECT_EQ(0u, user_folder_bit_of_rule("D:\\Users\\[^\\\\]*\\Desktop\\"));
}

TEST(ProfileRule, prefix_decides_in_any_case_of_letters) {
    EXPECT_TRUE(is_profile_rule("C:\\Users\\[^\\\\]*\\Downloads\\"));
    EXPECT_TRUE(is_profile_rule("c:\\uSERS\\[^\\\\]*\\"));
    EXPECT_FALSE(is_profile_rule("C:\\Users\\[^\\\\]*"));
    EXPECT_FALSE(is_profile_rule("C:\\Users\\anna\\Downloads\\"));
    EXPECT_FALSE(is_profile_rule(""));
}

}  // namespace
