// The message table of the built orvres.dll: every language holds the same texts, and each text what its
// place in the product asks for.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cwctype>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "companions/orvdialog/texts/message_numbers.h"
#include "ovufc/i18n/language_choice.h"
#include "ovufc/i18n/message_ids.h"
#include "ovufc/i18n/rosetta_stone.h"
#include "ovufc/win/handle.h"
#include "testkit/process/module_attach.h"

namespace ov::i18n {
namespace {

namespace ids = message_ids;
namespace dialogs = dialog::message_numbers;

constexpr std::array all_numbers{
    ids::product_title,
    ids::menu_protect,
    ids::menu_unprotect,
    ids::ask_unprotect,
    ids::category_folders,
    ids::category_cloud,
    ids::category_restore,
    ids::category_addons,
    ids::grouping_name,
    ids::column_name,
    ids::grouping_description,
    ids::column_type,
    ids::entry_restore,
    ids::entry_addons,
    ids::failure,
    ids::ask_restore,
    ids::ask_restore_again,
    ids::ask_addons,
    ids::addons_result,
    ids::menu_tracked_file,
    ids::unprotect_blocked,
    // The dialog library's.
    dialogs::protect_title,
    dialogs::folder_label,
    dialogs::about_protection,
    dialogs::already_protected,
    dialogs::protect_this_folder,
    dialogs::protect_other_path,
    dialogs::path_label,
    dialogs::browse,
    dialogs::protect,
    dialogs::cancel,
    dialogs::problem_root,
    dialogs::problem_network,
    dialogs::problem_too_long,
    dialogs::problem_gone,
    dialogs::problem_no_full_path,
    dialogs::chooser_title,
    dialogs::chooser_refused,
    dialogs::versions_title,
    dialogs::file_label,
    dialogs::versions_label,
    dialogs::open,
    dialogs::restore,
    dialogs::column_saved,
    dialogs::column_size,
    dialogs::column_kind,
    dialogs::column_file_name,
    dialogs::sort_by,
    dialogs::kind_first_copy,
    dialogs::kind_restore_point,
    dialogs::kind_before_restore,
    dialogs::version_not_usable,
    dialogs::list_unreadable,
    dialogs::list_empty,
    dialogs::request_unreadable,
    dialogs::not_shown,
};
constexpr std::array with_one_string{ids::ask_unprotect,         ids::ask_restore,
                                     ids::ask_restore_again,     ids::addons_result,
                                     dialogs::already_protected, dialogs::problem_too_long};
/// Those that a key chooses, marked with "&".
constexpr std::array with_key{
    ids::menu_protect,           ids::menu_unprotect, ids::menu_tracked_file, dialogs::protect_this_folder,
    dialogs::protect_other_path, dialogs::path_label, dialogs::browse,        dialogs::protect,
    dialogs::versions_label,     dialogs::open,       dialogs::restore,       dialogs::sort_by,
};
constexpr std::array one_line_dialog_texts{
    dialogs::protect_title,
    dialogs::folder_label,
    dialogs::protect_this_folder,
    dialogs::protect_other_path,
    dialogs::path_label,
    dialogs::browse,
    dialogs::protect,
    dialogs::cancel,
    dialogs::chooser_title,
    dialogs::versions_title,
    dialogs::file_label,
    dialogs::versions_label,
    dialogs::open,
    dialogs::restore,
    dialogs::column_saved,
    dialogs::column_size,
    dialogs::column_kind,
    dialogs::column_file_name,
    dialogs::sort_by,
};
constexpr std::array menu_items{ids::menu_protect, ids::menu_unprotect, ids::menu_tracked_file};

template <class Numbers>
bool contains(const Numbers& numbers, std::uint32_t number) {
    return std::ranges::find(numbers, number) != numbers.end();
}

using texts = std::map<std::uint32_t, std::wstring>;

std::wstring library_path() {
    return module_state::module_directory + L"orvres.dll";
}

/// The table of one language as it lies in the file (MESSAGE_RESOURCE_DATA), without FormatMessage's help, so
/// that no other language's texts stand in for missing ones.
texts raw_table(HMODULE library, WORD language) {
    const HRSRC resource = FindResourceExW(library, RT_MESSAGETABLE, MAKEINTRESOURCEW(1), language);
    if (resource == nullptr) {
        return {};
    }
    const auto* data = static_cast<const BYTE*>(LockResource(LoadResource(library, resource)));
    const auto& table = *reinterpret_cast<const MESSAGE_RESOURCE_DATA*>(data);
    texts found;
    for (DWORD b = 0; b < table.NumberOfBlocks; ++b) {
        const MESSAGE_RESOURCE_BLOCK& block = table.Blocks[b];
        const BYTE* at = data + block.OffsetToEntries;
        for (DWORD number = block.LowId; number <= block.HighId; ++number) {
            const auto& entry = *reinterpret_cast<const MESSAGE_RESOURCE_ENTRY*>(at);
            found[number] = reinterpret_cast<const wchar_t*>(entry.Text);
            at += entry.Length;
        }
    }
    return found;
}

class MessageTable : public testing::TestWithParam<std::uint32_t> {
  protected:
    void SetUp() override {
        ASSERT_TRUE(library) << "orvres.dll is not beside this program";
        raw = raw_table(library.get(), language);
        ASSERT_FALSE(raw.empty());
    }

    [[nodiscard]] std::wstring text(std::uint32_t number) const {
        std::array<wchar_t, 2048> buffer{};
        FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE, library.get(), number, language, buffer.data(),
                       static_cast<DWORD>(buffer.size()), nullptr);
        return buffer.data();
    }

    const WORD language = static_cast<WORD>(GetParam());
    const win::unique_library library{
        LoadLibraryExW(library_path().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE)};
    texts raw;
};

INSTANTIATE_TEST_SUITE_P(languages, MessageTable, testing::ValuesIn(known_languages), [](const auto& row) {
    const std::wstring_view tag = language_tags[row.index];
    std::string name(tag.begin(), tag.end());
    std::erase(name, '-');
    return name;
});

TEST_P(MessageTable, numbers_are_exactly_the_products) {
    std::vector<std::uint32_t> numbers;
    std::ranges::transform(raw, std::back_inserter(numbers), [](const auto& entry) { return entry.first; });
    EXPECT_THAT(numbers, testing::UnorderedElementsAreArray(all_numbers));
}

TEST_P(MessageTable, every_text_is_found_and_fits) {
    for (const std::uint32_t number : all_numbers) {
        const std::wstring found = text(number);
        EXPECT_FALSE(found.empty()) << std::hex << number;
        EXPECT_LT(found.size(), 1500U) << std::hex << number << ": leave room in the buffer of 2048";
    }
}

TEST_P(MessageTable, placeholders_are_one_string_where_the_product_gives_one) {
    for (const std::uint32_t number : all_numbers) {
        const std::wstring found = text(number);
        const auto percents = std::ranges::count(found, L'%');
        if (contains(with_one_string, number)) {
            EXPECT_EQ(percents, 1) << std::hex << number;
            EXPECT_NE(found.find(L"%s"), std::wstring::npos) << std::hex << number;
        } else {
            EXPECT_EQ(percents, 0) << std::hex << number;
        }
    }
}

TEST_P(MessageTable, texts_have_no_blanks_or_line_breaks_at_their_ends) {
    for (const std::uint32_t number : all_numbers) {
        const std::wstring found = text(number);
        ASSERT_FALSE(found.empty());
        EXPECT_FALSE(std::iswspace(found.front())) << std::hex << number;
        EXPECT_FALSE(std::iswspace(found.back())) << std::hex << number;
    }
}

TEST_P(MessageTable, names_and_menu_items_are_one_line) {
    for (const std::uint32_t number : all_numbers) {
        if (contains(menu_items, number) || contains(one_line_dialog_texts, number) ||
            number <= ids::menu_unprotect ||
            (number >= ids::category_folders && number <= ids::entry_addons)) {
            EXPECT_EQ(text(number).find_first_of(L"\r\n"), std::wstring::npos) << std::hex << number;
        }
    }
}

TEST_P(MessageTable, menu_items_and_controls_have_one_key_each) {
    for (const std::uint32_t number : all_numbers) {
        const std::wstring found = text(number);
        const auto ampersands = std::ranges::count(found, L'&');
        EXPECT_EQ(ampersands, contains(with_key, number) ? 1 : 0) << std::hex << number;
        if (ampersands == 1) {
            EXPECT_TRUE(std::iswalpha(found[found.find(L'&') + 1])) << std::hex << number;
        }
    }
}

TEST_P(MessageTable, accelerators_of_one_menu_differ) {
    const auto accelerator = [this](std::uint32_t number) {
        const std::wstring found = text(number);
        return std::towupper(found[found.find(L'&') + 1]);
    };
    EXPECT_NE(accelerator(ids::menu_protect), accelerator(ids::menu_unprotect));
    // The two items beside them, "Export …", answer to their first letter.
    EXPECT_NE(accelerator(ids::menu_protect), L'E');
    EXPECT_NE(accelerator(ids::menu_unprotect), L'E');
}

// East Asian menus and dialogs show a Latin key in brackets behind the text.
TEST_P(MessageTable, east_asian_accelerators_stand_in_brackets) {
    const WORD primary = PRIMARYLANGID(language);
    if (primary != LANG_JAPANESE && primary != LANG_KOREAN && primary != LANG_CHINESE) {
        return;
    }
    for (const std::uint32_t number : with_key) {
        const std::wstring found = text(number);
        const auto bracket = found.find(L"(&");
        ASSERT_NE(bracket, std::wstring::npos) << std::hex << number;
        EXPECT_EQ(found[bracket + 3], L')') << std::hex << number;
    }
}

TEST_P(MessageTable, texts_are_of_their_language) {
    if (language == fallback_language) {
        return;
    }
    const texts english = raw_table(library.get(), fallback_language);
    const auto same = std::ranges::count_if(
        raw, [&english](const auto& entry) { return english.at(entry.first) == entry.second; });
    EXPECT_LE(same, 5) << "the title and a few words are spelt alike";
}

TEST_P(MessageTable, the_two_restore_questions_differ) {
    EXPECT_NE(text(ids::ask_restore), text(ids::ask_restore_again));
}

TEST(ResourceLibrary, built_and_signed_is_loaded_by_the_product) {
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(library_path()));
    EXPECT_EQ(stone.lookup(ids::product_title), L"Orvane Vaultkeep");
    EXPECT_THAT(stone.format(ids::ask_unprotect, L"C:\\Älbum"), testing::HasSubstr(L"C:\\Älbum"));
}

TEST(ResourceLibrary, questions_have_their_lines_broken) {
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(library_path()));
    EXPECT_THAT(stone.format(ids::ask_unprotect, L"C:\\Album"),
                testing::HasSubstr(L"\r\n\r\nC:\\Album\r\n\r\n"));
}

}  // namespace
}  // namespace ov::i18n
