#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "module/state/class_ids.h"
#include "tests/module/menus/file_menu/tracked_file_fixture.h"

namespace ov::test {
namespace {

constexpr wchar_t filler = L'#';

struct string_result {
    HRESULT result;
    std::wstring text;
    /// Whether anything behind the text's terminator was written.
    bool is_bounded;
};

string_result ask(IContextMenu* menu, UINT_PTR id, UINT type, UINT cch = 64) {
    std::array<wchar_t, 80> buffer{};
    buffer.fill(filler);
    const HRESULT result =
        menu->GetCommandString(id, type, nullptr, reinterpret_cast<LPSTR>(buffer.data()), cch);
    const auto end = std::find(buffer.begin(), buffer.end(), L'\0');
    if (end == buffer.end()) {
        return {result, {}, std::count(buffer.begin(), buffer.end(), filler) == 80};
    }
    return {result, std::wstring(buffer.begin(), end),
            std::all_of(end + 1, buffer.end(), [](wchar_t character) { return character == filler; })};
}

class CommandString : public tracked_file_fixture {
  protected:
    CommandString() { reply_folder_status(true); }
};

constexpr std::array wide_types{GCS_VERBW, GCS_HELPTEXTW, GCS_VALIDATEW};
constexpr std::array narrow_types{GCS_VERBA, GCS_HELPTEXTA, GCS_VALIDATEA};

TEST_F(CommandString, folder_texts_serve_as_verb_help_and_validation) {
    const auto menu = menu_on(folder_.path());
    const std::array texts{message_texts::of(0x40000), message_texts::of(0x40001),
                           std::wstring(L"Export deleted files"), std::wstring(L"Export chronels")};
    for (const UINT type : wide_types) {
        for (UINT_PTR id = 0; id < texts.size(); ++id) {
            const auto got = ask(menu.Get(), id, type);
            EXPECT_EQ(got.result, S_OK);
            EXPECT_EQ(got.text, texts[id]);
            EXPECT_TRUE(got.is_bounded);
        }
    }
}

// Nothing but what a cast to half the width would lose.
constexpr UINT_PTR upper_half = UINT_PTR{1} << (sizeof(UINT_PTR) * 4);

TEST_F(CommandString, ids_beyond_the_four_are_refused) {
    const auto menu = menu_on(folder_.path());
    for (const UINT_PTR id : {UINT_PTR{4}, UINT_PTR{5}, upper_half, ~UINT_PTR{0}}) {
        const auto got = ask(menu.Get(), id, GCS_VERBW);
        EXPECT_EQ(got.result, E_INVALIDARG);
        EXPECT_TRUE(got.is_bounded);
    }
}

TEST_F(CommandString, narrow_requests_are_refused_in_every_mode) {
    const auto folder = menu_on(folder_.path());
    const auto file = file_menu();
    for (const UINT type : narrow_types) {
        for (auto* menu : {folder.Get(), file.Get()}) {
            EXPECT_EQ(ask(menu, 0, type).result, E_INVALIDARG) << type;
        }
    }
}

TEST_F(CommandString, tracked_file_has_one_text) {
    const auto menu = file_menu();
    for (const UINT type : wide_types) {
        EXPECT_EQ(ask(menu.Get(), 0, type).text, message_texts::of(0x40019));
        EXPECT_EQ(ask(menu.Get(), 1, type).result, E_INVALIDARG);
    }
}

TEST_F(CommandString, menu_without_a_selection_answers_as_for_a_folder) {
    const auto menu = make_menu(class_ids::shell_extension);
    EXPECT_EQ(ask(menu.Get(), 3, GCS_VERBW).text, L"Export chronels");
}

TEST_F(CommandString, short_buffer_cuts_the_text) {
    const auto menu = menu_on(folder_.path());
    for (const UINT cch : {1U, 2U, 7U, 15U, 16U}) {
        const auto got = ask(menu.Get(), 3, GCS_HELPTEXTW, cch);
        EXPECT_EQ(got.result, S_OK);
        EXPECT_EQ(got.text, std::wstring(L"Export chronels").substr(0, cch - 1)) << cch;
        EXPECT_TRUE(got.is_bounded);
    }
}

TEST_F(CommandString, no_buffer_is_ok_and_writes_nothing) {
    const auto menu = menu_on(folder_.path());
    const auto got = ask(menu.Get(), 3, GCS_VERBW, 0);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_TRUE(got.is_bounded);
    EXPECT_EQ(menu->GetCommandString(3, GCS_VALIDATEW, nullptr, nullptr, 64), S_OK);
    EXPECT_EQ(menu->GetCommandString(3, GCS_VALIDATEW, nullptr, nullptr, 0), S_OK);
}

}  // namespace
}  // namespace ov::test
