// Which language the loaded library answers in, for users of other languages and Windows versions than the
// prefix has. The sample library's message 0 is the tag of the language that it is in.
#include <gtest/gtest.h>
#include <windows.h>

#include <ostream>

#include "ovufc/i18n/language_choice.h"
#include "ovufc/i18n/rosetta_stone.h"
#include "testkit/imports/format_message.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/ovufc/cert/samples.h"

namespace ov::i18n {
namespace {

using test::format_message;
using test::import_patch;
using test::sample;

LANGID locale_language;
LANGID interface_language;
BOOL version_answer;

LANGID WINAPI given_locale_language() {
    return locale_language;
}
LANGID WINAPI given_interface_language() {
    return interface_language;
}
BOOL WINAPI given_version(LPOSVERSIONINFOEXW, DWORD, DWORDLONG) {
    return version_answer;
}

class LanguageOfUser : public testing::Test {
  protected:
    LanguageOfUser() {
        locale_language = interface_language = 0x0409;
        version_answer = TRUE;
    }

    const HMODULE program = GetModuleHandleW(nullptr);
    const import_patch<decltype(GetUserDefaultLangID)> locale{program, "kernel32.dll", "GetUserDefaultLangID",
                                                              given_locale_language};
    const import_patch<decltype(GetUserDefaultUILanguage)> user_interface{
        program, "kernel32.dll", "GetUserDefaultUILanguage", given_interface_language};
    const import_patch<decltype(VerifyVersionInfoW)> version{program, "kernel32.dll", "VerifyVersionInfoW",
                                                             given_version};
};

struct language_row {
    LANGID user;
    const wchar_t* answered_in;
};
std::ostream& operator<<(std::ostream& out, const language_row& row) {
    return out << std::hex << row.user;
}

class LanguageRow : public LanguageOfUser, public testing::WithParamInterface<language_row> {};

TEST_P(LanguageRow, texts_are_in_it) {
    locale_language = GetParam().user;
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_EQ(stone.lookup(0), GetParam().answered_in);
}

INSTANTIATE_TEST_SUITE_P(users, LanguageRow,
                         testing::Values(language_row{0x0409, L"en"}, language_row{0x0809, L"en"},
                                         language_row{0x0C0A, L"es"}, language_row{0x080A, L"es"},
                                         language_row{0x040C, L"fr"}, language_row{0x0411, L"ja"},
                                         language_row{0x0412, L"ko"}, language_row{0x0804, L"zhHans"},
                                         language_row{0x1004, L"zhHans"}, language_row{0x0C04, L"zhHant"},
                                         language_row{0x0404, L"zhHant"}, language_row{0x1404, L"zhHant"},
                                         language_row{0x0416, L"en"}, language_row{0x0816, L"en"},
                                         language_row{0x0421, L"en"}, language_row{0x0427, L"en"}));

TEST_F(LanguageOfUser, before_windows_8_is_that_of_the_interface) {
    version_answer = FALSE;
    locale_language = 0x040C;
    interface_language = 0x0411;
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_EQ(stone.lookup(0), L"ja");
}

TEST_F(LanguageOfUser, since_windows_8_is_that_of_the_locale) {
    locale_language = 0x040C;
    interface_language = 0x0411;
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_EQ(stone.lookup(0), L"fr");
}

DWORD asked_language;
DWORD WINAPI recorded_format(DWORD, LPCVOID, DWORD, DWORD language, LPWSTR, DWORD, char**) {
    asked_language = language;
    return 0;
}

TEST_F(LanguageOfUser, unknown_language_leaves_the_choice_to_the_message_table) {
    locale_language = 0x0407;
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_NE(stone.lookup(0), L"");
    const import_patch<format_message> formatting(program, "kernel32.dll", "FormatMessageW", recorded_format);
    asked_language = 0xFFFF;
    static_cast<void>(stone.lookup(0));
    EXPECT_EQ(asked_language, 0U);
}

TEST_F(LanguageOfUser, failed_load_chooses_the_language_all_the_same) {
    rosetta_stone stone;
    locale_language = 0x0C0A;
    {
        const import_patch<decltype(LoadLibraryExW)> loading(
            program, "kernel32.dll", "LoadLibraryExW", [](LPCWSTR, HANDLE, DWORD) { return HMODULE{}; });
        EXPECT_FALSE(stone.load(sample(L"maker")));
    }
    // An unknown language leaves what was chosen then.
    locale_language = 0x0407;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_EQ(stone.lookup(0), L"es");
}

TEST_F(LanguageOfUser, refused_load_chooses_no_language) {
    rosetta_stone stone;
    locale_language = 0x0C0A;
    EXPECT_FALSE(stone.load(sample(L"unsigned")));
    locale_language = 0x0407;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_NE(stone.lookup(0), L"es");
}

TEST_F(LanguageOfUser, language_of_a_later_load_is_not_taken) {
    locale_language = 0x040C;
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    locale_language = 0x0411;
    EXPECT_FALSE(stone.load(sample(L"maker")));
    EXPECT_EQ(stone.lookup(0), L"fr");
}

TEST(WindowsVersion, question_is_windows_8_or_later_in_each_part) {
    static bool asked;
    asked = false;
    const import_patch<decltype(VerifyVersionInfoW)> version(
        GetModuleHandleW(nullptr), "kernel32.dll", "VerifyVersionInfoW",
        [](LPOSVERSIONINFOEXW wanted, DWORD parts, DWORDLONG conditions) {
            asked = true;
            EXPECT_EQ(wanted->dwOSVersionInfoSize, sizeof(OSVERSIONINFOEXW));
            EXPECT_EQ(wanted->dwMajorVersion, 6U);
            EXPECT_EQ(wanted->dwMinorVersion, 2U);
            EXPECT_EQ(wanted->wServicePackMajor, 0U);
            EXPECT_EQ(parts, static_cast<DWORD>(VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR));
            DWORDLONG greater_or_equal = 0;
            for (const DWORD part : {VER_MAJORVERSION, VER_MINORVERSION, VER_SERVICEPACKMAJOR}) {
                greater_or_equal = VerSetConditionMask(greater_or_equal, part, VER_GREATER_EQUAL);
            }
            EXPECT_EQ(conditions, greater_or_equal);
            return FALSE;
        });
    (void)candidate_language();
    EXPECT_TRUE(asked);
}

}  // namespace
}  // namespace ov::i18n
