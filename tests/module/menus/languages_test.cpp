// The folder's menu for a user of each language: keys that choose one item, and what GetCommandString tells.

#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <cwctype>
#include <string>

#include "module/state/class_ids.h"
#include "ovufc/i18n/language_choice.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/imports/import_patch.h"
#include "tests/module/menus/menus_fixture.h"

namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;

LANGID users_language = 0;

LANGID WINAPI tell_users_language() {
    return users_language;
}

/// The key that chooses an item: the one marked with "&", else its first letter.
wchar_t key_of(const std::wstring& text) {
    const auto mark = text.find(L'&');
    return static_cast<wchar_t>(std::towupper(text.at(mark == std::wstring::npos ? 0 : mark + 1)));
}

class MenuLanguage : public testing::TestWithParam<std::uint32_t> {
  protected:
    MenuLanguage() {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        users_language = static_cast<LANGID>(GetParam());
        service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
        EXPECT_EQ(module_.create(class_ids::shell_extension, IID_PPV_ARGS(&menu_)), S_OK);
        EXPECT_EQ(initialize(menu_.Get(), select_paths({folder_.path()}).Get()), S_OK);
    }
    ~MenuLanguage() override {
        menu_.Reset();
        CoUninitialize();
    }

    [[nodiscard]] std::wstring command_text(UINT_PTR id, UINT type) const {
        std::array<wchar_t, 200> text{};
        EXPECT_EQ(menu_->GetCommandString(id, type, nullptr, reinterpret_cast<LPSTR>(text.data()), 200),
                  S_OK);
        return text.data();
    }

    watchdog dog_{60'000};
    temp_folder folder_;
    shipped_module module_;
    const import_patch<decltype(GetUserDefaultLangID)> language_{module_.handle(), "kernel32.dll;api-ms-*",
                                                                 "GetUserDefaultLangID", tell_users_language};
    scripted_service service_{
        [](const auto&) { return R"({"data":{"protectedFolder":true},"statusCode":0})"; }};
    ComPtr<IContextMenu> menu_;
};

TEST_P(MenuLanguage, keys_of_the_submenu_differ) {
    const queried_menu queried(menu_.Get(), CMF_NORMAL);
    ASSERT_EQ(queried.submenu.size(), 4U);
    const wchar_t protect = key_of(queried.submenu[0].text);
    const wchar_t unprotect = key_of(queried.submenu[1].text);
    EXPECT_NE(protect, unprotect);
    // The two exports are English everywhere and have no marked key: their letter goes from one to the other.
    for (const std::size_t export_item : {2U, 3U}) {
        EXPECT_EQ(key_of(queried.submenu[export_item].text), L'E');
    }
    EXPECT_NE(protect, L'E');
    EXPECT_NE(unprotect, L'E');
}

TEST_P(MenuLanguage, command_strings_keep_the_marks) {
    const queried_menu queried(menu_.Get(), CMF_NORMAL);
    ASSERT_EQ(queried.submenu.size(), 4U);
    for (const UINT type : {GCS_VERBW, GCS_HELPTEXTW, GCS_VALIDATEW}) {
        for (UINT_PTR id = 0; id < 4; ++id) {
            EXPECT_EQ(command_text(id, type), queried.submenu[id].text);
        }
        EXPECT_NE(command_text(0, type).find(L'&'), std::wstring::npos);
        EXPECT_NE(command_text(1, type).find(L'&'), std::wstring::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(languages, MenuLanguage, testing::ValuesIn(i18n::known_languages),
                         [](const auto& row) {
                             const std::wstring_view tag = i18n::language_tags[row.index];
                             std::string name(tag.begin(), tag.end());
                             std::erase(name, '-');
                             return name;
                         });

}  // namespace
}  // namespace ov::test
