#include "tools/command_line/arguments.h"

#include <gtest/gtest.h>

namespace ov::command_line {
namespace {

TEST(Arguments, switch_is_taken_once) {
    arguments words({L"--extended", L"path"});
    EXPECT_TRUE(words.take_switch(L"--extended"));
    EXPECT_FALSE(words.take_switch(L"--extended"));
    EXPECT_EQ(words.take_rest(), std::vector<std::wstring>{L"path"});
}

/// What the person is told when `take` finds the words off.
template <class Take>
std::wstring complaint(std::vector<std::wstring> words, const Take& take) {
    arguments taken(std::move(words));
    try {
        take(taken);
    } catch (const usage_error& error) {
        return error.message();
    }
    return L"(none)";
}

TEST(Arguments, value_is_the_word_behind) {
    arguments words({L"path", L"--invoke", L"open"});
    EXPECT_EQ(words.take_value(L"--invoke"), L"open");
    EXPECT_EQ(words.take_value(L"--invoke"), std::nullopt);
    EXPECT_EQ(words.take_rest(), std::vector<std::wstring>{L"path"});
}

TEST(Arguments, missing_value_names_its_option) {
    const auto take = [](arguments& words) { (void)words.take_value(L"--invoke"); };
    EXPECT_EQ(complaint({L"path", L"--invoke"}, take), L"--invoke needs a value");
    EXPECT_EQ(complaint({L"--invoke", L"--module", L"x"}, take), L"--invoke needs a value");
}

TEST(Arguments, words_are_taken_in_their_order) {
    arguments words({L"add", L"path", L"--provider", L"x"});
    EXPECT_EQ(words.take_word(L"what to do"), L"add");
    EXPECT_EQ(words.take_value(L"--provider"), L"x");
    EXPECT_EQ(words.take_word(L"a folder"), L"path");
    EXPECT_TRUE(words.is_empty());
}

TEST(Arguments, missing_word_is_named) {
    const auto take = [](arguments& words) { (void)words.take_word(L"a folder"); };
    EXPECT_EQ(complaint({}, take), L"name a folder");
    EXPECT_EQ(complaint({L"--as", L"path"}, take), L"unknown option '--as'");
}

TEST(Arguments, number_is_checked_against_its_bounds) {
    EXPECT_EQ(arguments({L"--bench", L"12"}).take_number(L"--bench", 1, 12), 12U);
    for (const wchar_t* text :
         {L"0", L"13", L"x", L"", L"1x", L"-1", L"+5", L"4294967301", L"99999999999999999999"}) {
        EXPECT_THROW((void)arguments({L"--bench", text}).take_number(L"--bench", 1, 12), usage_error) << text;
    }
}

TEST(Arguments, what_is_left_is_named) {
    const auto end = [](arguments& words) { words.expect_end(); };
    EXPECT_EQ(complaint({L"--nonsense"}, end), L"unknown option '--nonsense'");
    EXPECT_EQ(complaint({L"word"}, end), L"unexpected word 'word'");
    EXPECT_EQ(complaint({}, end), L"(none)");
}

TEST(Arguments, option_given_twice_is_no_unknown_option) {
    const auto take = [](arguments& words) {
        (void)words.take_switch(L"--quiet");
        (void)words.take_rest();
    };
    EXPECT_EQ(complaint({L"--quiet", L"--quiet"}, take), L"--quiet is given twice");
}

}  // namespace
}  // namespace ov::command_line
