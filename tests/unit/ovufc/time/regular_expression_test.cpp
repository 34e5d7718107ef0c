#include "ovufc/time/regular_expression.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <regex>
#include <string>

#include "ovufc/time/text_patterns.h"

namespace {

using ov::time::regular_expression;
namespace patterns = ov::time::patterns;

TEST(RegularExpression, characters_match_themselves) {
    const regular_expression pattern(L"^ab$");
    EXPECT_TRUE(pattern.matches(L"ab"));
    EXPECT_FALSE(pattern.matches(L"a"));
    EXPECT_FALSE(pattern.matches(L"abc"));
    EXPECT_FALSE(pattern.matches(L"xab"));
    EXPECT_FALSE(pattern.matches(L"AB"));
    EXPECT_FALSE(pattern.matches(L""));
}

TEST(RegularExpression, digit_is_one_of_the_ten_of_ascii) {
    const regular_expression pattern(LR"(^\d$)");
    EXPECT_TRUE(pattern.matches(L"0"));
    EXPECT_TRUE(pattern.matches(L"9"));
    EXPECT_FALSE(pattern.matches(L"d"));
    EXPECT_FALSE(pattern.matches(L"\u0663"));
    EXPECT_FALSE(pattern.matches(L"\uFF13"));
}

TEST(RegularExpression, escaped_character_stands_for_itself) {
    const regular_expression pattern(LR"(^\.\/\\$)");
    EXPECT_TRUE(pattern.matches(LR"(./\)"));
    EXPECT_FALSE(pattern.matches(LR"(x/\)"));
}

TEST(RegularExpression, set_is_any_of_its_characters) {
    const regular_expression pattern(L"^[ T+-]$");
    for (const wchar_t* text : {L" ", L"T", L"+", L"-"}) {
        EXPECT_TRUE(pattern.matches(text)) << text;
    }
    EXPECT_FALSE(pattern.matches(L","));
    EXPECT_FALSE(pattern.matches(L"T "));
}

TEST(RegularExpression, counts_bound_the_repetitions) {
    const regular_expression exactly(L"^a{3}$");
    const regular_expression between(L"^a{1,2}$");
    const regular_expression at_most_one(L"^a?b$");
    const std::array<std::array<bool, 4>, 2> expected{
        {{false, false, false, true}, {false, true, true, false}}};
    for (std::size_t count = 0; count < 4; ++count) {
        EXPECT_EQ(exactly.matches(std::wstring(count, L'a')), expected[0][count]) << count;
        EXPECT_EQ(between.matches(std::wstring(count, L'a')), expected[1][count]) << count;
    }
    EXPECT_TRUE(at_most_one.matches(L"b"));
    EXPECT_TRUE(at_most_one.matches(L"ab"));
    EXPECT_FALSE(at_most_one.matches(L"aab"));
}

TEST(RegularExpression, group_is_any_of_its_alternatives_and_nests) {
    const regular_expression pattern(L"^((Mon|Thu[r]?), )?(a|ab)c$");
    for (const wchar_t* text : {L"Mon, ac", L"Thu, ac", L"Thur, abc", L"ac", L"abc"}) {
        EXPECT_TRUE(pattern.matches(text)) << text;
    }
    for (const wchar_t* text : {L"Monr, ac", L"Mon ac", L", ac", L"Mon, Mon, ac", L"c"}) {
        EXPECT_FALSE(pattern.matches(text)) << text;
    }
}

TEST(RegularExpression, text_that_is_too_long_does_not_match) {
    const regular_expression pattern(L"^a{1,999}$");
    EXPECT_TRUE(pattern.matches(std::wstring(63, L'a')));
    EXPECT_FALSE(pattern.matches(std::wstring(64, L'a')));
    EXPECT_FALSE(pattern.matches(std::wstring(1'000'000, L'a')));
    // One place more than there are bits: it would be taken for the first, where this one may end.
    EXPECT_FALSE(regular_expression(L"^a?$").matches(std::wstring(64, L'b')));
}

struct pattern_row {
    const wchar_t* text;
    bool (*matches)(const std::wstring&);
};

// The patterns once more, for the standard library, which is what they are written for.
const std::array<pattern_row, 4> pattern_rows{{
    {LR"(^\d{4}-\d{1,2}-\d{1,2}[ T]\d{1,2}:\d{1,2}:\d{1,2}(\.\d{1,3})?[Z]?$)", patterns::is_iso},
    {LR"(^\d{4}-\d{1,2}-\d{1,2}[ T]\d{1,2}:\d{1,2}:\d{1,2}(\.\d{1,3})?[+-]\d{1,2}:\d{1,2}$)",
     patterns::is_iso_with_offset},
    {LR"(^((Sun|Mon|Tue|Wed|Thu[r]?|Fri|Sat), )?\d{1,2} (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) )"
     LR"(\d{4} \d{1,2}:\d{1,2}:\d{1,2}( (AM|PM|GMT))?$)",
     patterns::is_rfc1123},
    {LR"(^\d{1,2}\/\d{1,2}\/\d{4} \d{1,2}:\d{1,2}:\d{1,2}( (AM|PM|GMT))?$)", patterns::is_us_date},
}};

const std::array<std::wstring, 12> date_texts{
    L"2021-03-04T05:06:07Z",
    L"2021-3-4 5:6:7",
    L"2021-03-04T05:06:07.123Z",
    L"2021-03-04T05:06:07.5+02:00",
    L"2021-03-04 05:06:07-5:30",
    L"Thu, 04 Mar 2021 05:06:07 GMT",
    L"Thur, 4 Mar 2021 5:06:07 PM",
    L"4 Dec 2021 15:06:07",
    L"3/4/2021 5:06:07 PM",
    L"12/31/2021 05:06:07",
    L"Wednesday, 04 Mar 2021 5:06:07",
    L"",
};

// One to three changes of a character: another one, one more, one less.
std::wstring changed(std::wstring text, std::mt19937& random) {
    constexpr std::wstring_view characters = L"0123456789-:./+ TZ,AMPGSundTher\nx";
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (std::size_t changes = 1 + below(3); changes != 0; --changes) {
        const std::size_t place = below(text.size() + 1);
        const wchar_t character = characters[below(characters.size())];
        switch (below(3)) {
            case 0:
                text.insert(place, 1, character);
                break;
            case 1:
                text.erase(std::min(place, text.size()), 1);
                break;
            default:
                if (place < text.size()) {
                    text[place] = character;
                }
        }
    }
    return text;
}

TEST(TextPatterns, changed_dates_match_where_the_standard_library_says_so) {
    std::mt19937 random(20210304);  // NOLINT: the same texts in every run
    unsigned matching = 0;
    for (const pattern_row& row : pattern_rows) {
        const std::wregex standard(row.text);
        for (int i = 0; i < 3000; ++i) {
            const std::wstring text = i < static_cast<int>(date_texts.size())
                                          ? date_texts[i]
                                          : changed(date_texts[random() % date_texts.size()], random);
            const bool expected = std::regex_match(text, standard);
            EXPECT_EQ(row.matches(text), expected) << std::wstring(row.text) << L": " << text;
            matching += expected ? 1 : 0;
        }
    }
    EXPECT_GT(matching, 200u);  // both answers were asked for
}

}  // namespace
