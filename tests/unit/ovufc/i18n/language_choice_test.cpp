#include "ovufc/i18n/language_choice.h"

#include <windows.h>
#include <versionhelpers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace ov::i18n {
namespace {

struct choice_row {
    std::uint16_t candidate;
    std::uint16_t chosen;  // 0: left as it was
};

std::ostream& operator<<(std::ostream& out, const choice_row& row) {
    return out << std::hex << row.candidate;
}

class LanguageChoice : public testing::TestWithParam<choice_row> {};

TEST_P(LanguageChoice, candidate_gives_its_row) {
    const auto chosen = choose_language(GetParam().candidate);
    EXPECT_EQ(chosen.value_or(0), GetParam().chosen);
    EXPECT_EQ(chosen.has_value(), GetParam().chosen != 0);
}

INSTANTIATE_TEST_SUITE_P(enabled, LanguageChoice,
                         testing::Values(choice_row{0x0409, 0x0409}, choice_row{0x0C0A, 0x0C0A},
                                         choice_row{0x040C, 0x040C}, choice_row{0x0411, 0x0411},
                                         choice_row{0x0412, 0x0412}, choice_row{0x0804, 0x0804},
                                         choice_row{0x0C04, 0x0C04}));

INSTANTIATE_TEST_SUITE_P(known_but_not_enabled, LanguageChoice,
                         testing::Values(choice_row{0x0421, 0x0409}, choice_row{0x0427, 0x0409},
                                         choice_row{0x0416, 0x0409}));

INSTANTIATE_TEST_SUITE_P(relatives, LanguageChoice,
                         testing::Values(choice_row{0x0809, 0x0409}, choice_row{0x080A, 0x0C0A},
                                         choice_row{0x040A, 0x0C0A}, choice_row{0x080C, 0x040C},
                                         choice_row{0x0816, 0x0409}, choice_row{0x0009, 0x0409},
                                         choice_row{0x0827, 0x0409}));

// 0x1C04 passes the mask of the traditional ids but is excepted by name: like any other Chinese it takes the
// first Chinese of the table.
INSTANTIATE_TEST_SUITE_P(chinese, LanguageChoice,
                         testing::Values(choice_row{0x0404, 0x0C04}, choice_row{0x1404, 0x0C04},
                                         choice_row{0x1004, 0x0804}, choice_row{0x1C04, 0x0804},
                                         choice_row{0x0004, 0x0804}, choice_row{0x7C04, 0x0804},
                                         choice_row{0x1804, 0x0804}, choice_row{0xFC04, 0x0804}));

INSTANTIATE_TEST_SUITE_P(unknown, LanguageChoice,
                         testing::Values(choice_row{0x0407, 0}, choice_row{0x0000, 0}, choice_row{0x0400, 0},
                                         choice_row{0x0419, 0}, choice_row{0xFFFF, 0}));

TEST(LanguageChoiceTables, enabled_are_among_the_known) {
    for (const std::uint32_t id : enabled_languages) {
        EXPECT_EQ(choose_language(static_cast<std::uint16_t>(id)), id);
    }
}

TEST(LanguageChoiceTables, every_id_gives_an_enabled_language_or_none) {
    for (std::uint32_t id = 0; id <= 0xFFFF; ++id) {
        const auto chosen = choose_language(static_cast<std::uint16_t>(id));
        if (chosen) {
            EXPECT_NE(std::ranges::find(enabled_languages, *chosen), enabled_languages.end()) << id;
        }
    }
}

TEST(CandidateLanguage, system_of_the_prefix_is_the_users_locale) {
    ASSERT_TRUE(IsWindows8OrGreater()) << "the prefix is set up as Windows 10";
    EXPECT_EQ(candidate_language(), GetUserDefaultLangID());
}

}  // namespace
}  // namespace ov::i18n
