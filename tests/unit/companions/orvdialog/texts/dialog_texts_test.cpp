#include "companions/orvdialog/texts/dialog_texts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "companions/orvdialog/texts/message_numbers.h"
#include "ovufc/i18n/message_ids.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/module_attach.h"
#include "testkit/files/temp_folder.h"

namespace ov::dialog {
namespace {

namespace numbers = message_numbers;

LANGID users_language = 0x0409;

LANGID WINAPI tell_users_language() {
    return users_language;
}

/// The texts that a user of a language gets.
class DialogTexts : public testing::Test {
  protected:
    static std::wstring for_user_of(LANGID language, std::uint32_t number) {
        users_language = language;
        const dialog_texts texts(module_state::module_directory + L"orvres.dll");
        EXPECT_FALSE(texts.is_right_to_left());
        return texts.text(number);
    }

    const test::import_patch<decltype(GetUserDefaultLangID)> patch{
        GetModuleHandleW(nullptr), "kernel32.dll;api-ms-*", "GetUserDefaultLangID", tell_users_language};
};

TEST_F(DialogTexts, language_is_chosen_as_the_module_does) {
    EXPECT_EQ(for_user_of(0x0409, numbers::cancel), L"Cancel");
    EXPECT_EQ(for_user_of(0x0411, numbers::cancel), L"キャンセル");
    EXPECT_EQ(for_user_of(0x080C, numbers::cancel), L"Annuler") << "French in Belgium";
    EXPECT_EQ(for_user_of(0x0404, numbers::open), L"開啟(&O)") << "Chinese in Taiwan";
    EXPECT_EQ(for_user_of(0x0427, numbers::cancel), L"Cancel") << "Lithuanian is known and not enabled";
    EXPECT_EQ(for_user_of(0x0401, numbers::cancel), L"Cancel") << "Arabic is not known";
}

TEST_F(DialogTexts, without_the_library_are_the_english_ones) {
    const dialog_texts found(module_state::module_directory + L"orvres.dll");
    const dialog_texts missing(L"C:\\no such library.dll");
    for (std::uint32_t number = 0x40100; number < 0x40150; ++number) {
        EXPECT_EQ(missing.text(number), found.text(number)) << std::hex << number;
    }
    EXPECT_EQ(missing.text(i18n::message_ids::product_title), L"Orvane Vaultkeep");
    EXPECT_FALSE(missing.is_right_to_left());
}

TEST_F(DialogTexts, library_that_is_not_as_the_maker_signed_it_is_not_used) {
    users_language = 0x0411;
    const test::temp_folder folder;
    const std::wstring copy = folder.path() + L"\\orvres.dll";
    ASSERT_TRUE(CopyFileW((module_state::module_directory + L"orvres.dll").c_str(), copy.c_str(), TRUE));
    EXPECT_EQ(dialog_texts(copy).text(numbers::cancel), L"キャンセル");
    {
        std::fstream file(std::filesystem::path(copy), std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(0x50);  // in the words for MS-DOS
        file.put('?');
    }
    EXPECT_EQ(dialog_texts(copy).text(numbers::cancel), L"Cancel");
}

TEST(DialogTextsInsert, stands_in_place_of_the_mark) {
    const dialog_texts texts(L"C:\\no such library.dll");
    EXPECT_EQ(texts.text(numbers::problem_too_long, L"%s 259"),
              L"This path is too long. Choose one of at most %s 259 characters.");
    EXPECT_EQ(texts.text(numbers::cancel, L"x"), L"Cancel");
    EXPECT_EQ(texts.text(0x4FFFF), L"");
}

TEST(WithoutMnemonic, mark_is_taken_away) {
    EXPECT_EQ(without_mnemonic(L"&Unprotect folder"), L"Unprotect folder");
    EXPECT_EQ(without_mnemonic(L"Earlier &versions..."), L"Earlier versions");
    EXPECT_EQ(without_mnemonic(L"開く(&O)"), L"開く");
    EXPECT_EQ(without_mnemonic(L"以前のバージョン(&V)..."), L"以前のバージョン");
    EXPECT_EQ(without_mnemonic(L"以前のバージョン(&E):"), L"以前のバージョン:");
    EXPECT_EQ(without_mnemonic(L"plain"), L"plain");
    EXPECT_EQ(without_mnemonic(L""), L"");
}

}  // namespace
}  // namespace ov::dialog
