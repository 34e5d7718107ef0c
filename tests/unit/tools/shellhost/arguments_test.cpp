#include "tools/shellhost/arguments.h"

#include <gtest/gtest.h>

namespace ov::shellhost {
namespace {

TEST(Arguments, Switch_IsTakenOnce) {
    arguments words({L"--extended", L"path"});
    EXPECT_TRUE(words.take_switch(L"--extended"));
    EXPECT_FALSE(words.take_switch(L"--extended"));
    EXPECT_EQ(words.take_rest(), std::vector<std::wstring>{L"path"});
}

TEST(Arguments, Value_IsTheWordBehind) {
    arguments words({L"path", L"--invoke", L"--module"});
    EXPECT_EQ(words.take_value(L"--invoke"), L"--module");
    EXPECT_EQ(words.take_value(L"--module"), std::nullopt);
    EXPECT_EQ(words.take_rest(), std::vector<std::wstring>{L"path"});
}

TEST(Arguments, MissingValue_IsAUsageError) {
    arguments words({L"--invoke"});
    EXPECT_THROW((void)words.take_value(L"--invoke"), usage_error);
}

TEST(Arguments, Number_IsCheckedAgainstItsBounds) {
    EXPECT_EQ(arguments({L"--bench", L"12"}).take_number(L"--bench", 1, 12), 12U);
    for (const wchar_t* text : {L"0", L"13", L"x", L"", L"1x", L"99999999999999999999"}) {
        EXPECT_THROW((void)arguments({L"--bench", text}).take_number(L"--bench", 1, 12), usage_error) << text;
    }
}

TEST(Arguments, UnknownOption_IsAUsageError) {
    EXPECT_THROW((void)arguments({L"--nonsense"}).take_rest(), usage_error);
    EXPECT_THROW(arguments({L"word"}).expect_end(), usage_error);
    EXPECT_NO_THROW(arguments({}).expect_end());
}

}  // namespace
}  // namespace ov::shellhost
