#include "tools/stand_ins/associations/default_extract_icon.h"

#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <array>
#include <string>

#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tests/unit/tools/stand_ins/test_class_key.h"
#include "tools/stand_ins/items/interface_ids.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

struct location {
    HRESULT result;
    std::wstring file;
    int index;
    UINT flags;
};

class DefaultExtractIcon : public testing::Test {
  protected:
    DefaultExtractIcon() {
        EXPECT_EQ(create_default_extract_icon(IID_PPV_ARGS(init.GetAddressOf())), S_OK);
        EXPECT_EQ(init.As(&icon), S_OK);
    }

    location locate(UINT asked) const {
        std::array<wchar_t, MAX_PATH> file{};
        location found{};
        found.result = icon->GetIconLocation(asked, file.data(), MAX_PATH, &found.index, &found.flags);
        found.file = file.data();
        return found;
    }

    test_apartment apartment;
    ComPtr<IDefaultExtractIconInit> init;
    ComPtr<IExtractIconW> icon;
};

TEST_F(DefaultExtractIcon, nothing_set_leaves_the_shell_its_default) {
    const location found = locate(0);
    EXPECT_EQ(found.result, S_FALSE);
    EXPECT_EQ(found.file, L"");
}

TEST_F(DefaultExtractIcon, normal_icon_is_given_with_the_flags) {
    EXPECT_EQ(init->SetFlags(GIL_SHIELD), S_OK);
    EXPECT_EQ(init->SetNormalIcon(L"C:\\some.dll", -105), S_OK);
    const location found = locate(GIL_FORSHELL);
    EXPECT_EQ(found.result, S_OK);
    EXPECT_EQ(found.file, L"C:\\some.dll");
    EXPECT_EQ(found.index, -105);
    EXPECT_EQ(found.flags, static_cast<UINT>(GIL_SHIELD));
}

TEST_F(DefaultExtractIcon, open_and_shortcut_icons_are_given_only_when_asked_for) {
    init->SetNormalIcon(L"normal", 1);
    EXPECT_EQ(locate(GIL_OPENICON).file, L"normal");
    init->SetOpenIcon(L"open", 2);
    init->SetShortcutIcon(L"shortcut", 3);
    EXPECT_EQ(locate(GIL_OPENICON).file, L"open");
    EXPECT_EQ(locate(GIL_FORSHORTCUT).file, L"shortcut");
    EXPECT_EQ(locate(0).file, L"normal");
}

TEST_F(DefaultExtractIcon, key_and_default_icon_step_in_without_a_normal_one) {
    const test_class_key key;
    key.set(L"DefaultIcon", nullptr, L"C:\\keyed.dll,-7");
    init->SetDefaultIcon(L"last", 9);
    EXPECT_EQ(locate(0).file, L"last");
    EXPECT_EQ(init->SetKey(key.get()), S_OK);
    EXPECT_EQ(locate(0).file, L"C:\\keyed.dll");
    EXPECT_EQ(locate(0).index, -7);
}

TEST_F(DefaultExtractIcon, small_buffer_is_refused_and_not_overrun) {
    init->SetNormalIcon(L"C:\\some.dll", 0);
    std::array<wchar_t, 8> file;
    file.fill(L'x');
    int index = 0;
    UINT flags = 0;
    EXPECT_EQ(icon->GetIconLocation(0, file.data(), 4, &index, &flags),
              HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(file[4], L'x');
}

TEST_F(DefaultExtractIcon, null_pointers_are_refused) {
    EXPECT_EQ(create_default_extract_icon(__uuidof(IExtractIconW), nullptr), E_POINTER);
    EXPECT_EQ(icon->GetIconLocation(0, nullptr, 0, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(init->SetNormalIcon(nullptr, 0), E_INVALIDARG);
}

TEST_F(DefaultExtractIcon, extract_gives_the_icon_of_a_file) {
    HICON large = nullptr;
    HICON small_icon = nullptr;
    const std::wstring file = L"C:\\windows\\system32\\shell32.dll";
    EXPECT_EQ(icon->Extract(file.c_str(), 0, &large, &small_icon, MAKELONG(32, 16)), S_OK);
    EXPECT_NE(large, nullptr);
    DestroyIcon(large);
    DestroyIcon(small_icon);
}

TEST_F(DefaultExtractIcon, narrow_interface_gives_the_same_location) {
    ComPtr<IExtractIconA> narrow;
    ASSERT_EQ(init.As(&narrow), S_OK);
    init->SetNormalIcon(L"C:\\some.dll", 4);
    std::array<char, MAX_PATH> file{};
    int index = 0;
    UINT flags = 0;
    EXPECT_EQ(narrow->GetIconLocation(0, file.data(), MAX_PATH, &index, &flags), S_OK);
    EXPECT_STREQ(file.data(), "C:\\some.dll");
    EXPECT_EQ(index, 4);
}

}  // namespace
}  // namespace ov::stand_ins
