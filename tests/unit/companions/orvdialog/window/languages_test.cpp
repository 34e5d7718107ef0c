// Both dialogs in all ten languages: nothing is cut at any size, each key chooses one control, and a screen
// reader finds a name for each.
#include <windows.h>
#include <oleacc.h>
#include <wrl/client.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "companions/orvdialog/control_ids.h"
#include "companions/orvdialog/texts/message_numbers.h"
#include "companions/orvdialog/versions/version_menu.h"
#include "ovufc/i18n/language_choice.h"
#include "tests/unit/companions/orvdialog/window/language_dialogs.h"
#include "tests/unit/companions/orvdialog/window/text_fit.h"

namespace ov::dialog {
namespace {

/// The name that an accessibility client of the older kind (MSAA) is told.
std::wstring accessible_name(HWND control) {
    Microsoft::WRL::ComPtr<IAccessible> object;
    if (FAILED(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                          reinterpret_cast<void**>(object.GetAddressOf())))) {
        return {};
    }
    VARIANT self{};
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    BSTR name = nullptr;
    object->get_accName(self, &name);
    const std::wstring found = name == nullptr ? L"" : name;
    SysFreeString(name);
    return found;
}

std::vector<HWND> controls_of(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        controls.push_back(child);
    }
    return controls;
}

/// The keys that texts mark with "&", in capitals.
std::wstring keys_of(const std::vector<std::wstring>& texts) {
    std::wstring keys;
    for (const std::wstring& text : texts) {
        const auto mark = text.find(L'&');
        if (mark != std::wstring::npos && mark + 1 < text.size()) {
            keys += static_cast<wchar_t>(std::towupper(text[mark + 1]));
        }
    }
    std::ranges::sort(keys);
    return keys;
}

class DialogLanguage : public testing::TestWithParam<std::uint32_t> {
  protected:
    void SetUp() override { ASSERT_FALSE(texts.text(message_numbers::protect).empty()); }
    void TearDown() override {
        if (shown) {
            shown_dialog::press(window, IDCANCEL);
            EXPECT_EQ(shown->result(), static_cast<std::uint32_t>(IDCANCEL));
        }
    }

    void open_protection() {
        shown = show_protection(texts);
        window = shown->window(texts.text(message_numbers::protect_title));
        ASSERT_NE(window, nullptr);
    }
    void open_versions() {
        shown = show_versions(texts);
        window = shown->window(texts.text(message_numbers::versions_title));
        ASSERT_NE(window, nullptr);
    }
    void expect_nothing_cut() const {
        for (const UINT dpi : {96U, 144U, 192U, 120U, 96U}) {
            set_dpi(window, dpi);
            EXPECT_THAT(cut_texts(window), testing::IsEmpty()) << dpi << " dots per inch";
        }
    }
    /// Each of the five, for it is they that must fit into what is kept free for them.
    void expect_no_problem_cut() const {
        for (const std::wstring& path :
             {std::wstring(L"nowhere"), std::wstring(L"C:\\"), std::wstring(L"\\\\server\\share"),
              std::wstring(L"C:\\none such"), L"C:\\" + std::wstring(300, L'x')}) {
            const HWND problem = GetDlgItem(window, IDC_PROTECT_PROBLEM);
            const std::wstring former = text_of(problem);
            SetDlgItemTextW(window, IDC_PROTECT_OBJECT, path.c_str());
            EXPECT_TRUE(shown_dialog::eventually([&] { return text_of(problem) != former; }));
            for (const UINT dpi : {96U, 144U, 192U}) {
                set_dpi(window, dpi);
                EXPECT_THAT(cut_texts(window), testing::IsEmpty()) << dpi << " dots per inch";
            }
        }
    }
    void expect_each_key_once(std::size_t least) const {
        std::vector<std::wstring> shown_texts;
        for (const HWND control : controls_of(window)) {
            if (GetDlgCtrlID(control) != IDC_PROTECT_OBJECT && GetDlgCtrlID(control) != IDC_PROTECT_NOTE) {
                shown_texts.push_back(text_of(control));
            }
        }
        const std::wstring keys = keys_of(shown_texts);
        EXPECT_GE(keys.size(), least);
        EXPECT_EQ(std::ranges::adjacent_find(keys), keys.end()) << "two controls with one key";
    }
    void expect_names() const {
        for (const HWND control : controls_of(window)) {
            if (GetDlgCtrlID(control) != IDC_PROTECT_PROBLEM) {
                EXPECT_NE(accessible_name(control), L"") << GetDlgCtrlID(control);
            }
        }
    }

    const language_texts texts{static_cast<WORD>(GetParam())};
    std::unique_ptr<shown_dialog> shown;
    HWND window = nullptr;
};

// One opening for each dialog and language: it takes half a second.
TEST_P(DialogLanguage, protection_is_nowhere_cut_and_has_keys_and_names) {
    open_protection();
    expect_nothing_cut();
    expect_each_key_once(5);
    expect_names();
    EXPECT_EQ(accessible_name(GetDlgItem(window, IDC_PROTECT_FOLDER)),
              texts.text(message_numbers::folder_label));
    expect_no_problem_cut();
}

TEST_P(DialogLanguage, versions_are_nowhere_cut_and_have_keys_and_names) {
    open_versions();
    expect_nothing_cut();
    expect_each_key_once(3);
    expect_names();
    EXPECT_EQ(accessible_name(GetDlgItem(window, IDC_CHRONELS_LIST)),
              without_mnemonic(texts.text(message_numbers::versions_label)));
}

TEST_P(DialogLanguage, menu_of_a_version_has_each_key_once) {
    const version_menu menu(texts, 0, true);
    std::vector<std::wstring> items;
    for (int i = 0; i < GetMenuItemCount(menu.handle()); ++i) {
        wchar_t text[100]{};
        GetMenuStringW(menu.handle(), static_cast<UINT>(i), text, 100, MF_BYPOSITION);
        items.emplace_back(text);
    }
    const std::wstring keys = keys_of(items);
    EXPECT_EQ(keys.size(), 3U);
    EXPECT_EQ(std::ranges::adjacent_find(keys), keys.end());
}

INSTANTIATE_TEST_SUITE_P(languages, DialogLanguage, testing::ValuesIn(i18n::known_languages),
                         [](const auto& row) {
                             const std::wstring_view tag = i18n::language_tags[row.index];
                             std::string name(tag.begin(), tag.end());
                             std::erase(name, '-');
                             return name;
                         });

TEST(TextFit, button_made_narrow_is_noticed) {
    const language_texts texts(0x0409);
    const auto shown = show_protection(texts);
    const HWND window = shown->window(texts.text(message_numbers::protect_title));
    SetWindowPos(GetDlgItem(window, IDOK), nullptr, 0, 0, 20, 20, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_THAT(cut_texts(window), testing::Not(testing::IsEmpty()));
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), static_cast<std::uint32_t>(IDCANCEL));
}

TEST(MirroredDialog, controls_stand_on_the_other_side) {
    const language_texts texts(0x0409, true);
    const auto shown = show_versions(texts);
    const HWND window = shown->window(texts.text(message_numbers::versions_title));
    RECT open{};
    RECT cancel{};
    GetWindowRect(GetDlgItem(window, IDC_CHRONELS_OPEN), &open);
    GetWindowRect(GetDlgItem(window, IDCANCEL), &cancel);
    EXPECT_GT(open.left, cancel.left);
    EXPECT_NE(GetWindowLongPtrW(GetDlgItem(window, IDC_CHRONELS_LIST), GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0);
    EXPECT_THAT(cut_texts(window), testing::IsEmpty());
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown->result(), static_cast<std::uint32_t>(IDCANCEL));
}

}  // namespace
}  // namespace ov::dialog
