#include "ovufc/win/reg_key.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <type_traits>

#include "ovufc/exception.h"

namespace ov::win {
namespace {

using testing::HasSubstr;

static_assert(!std::is_copy_constructible_v<reg_key> && !std::is_copy_assignable_v<reg_key>);
static_assert(!std::is_copy_constructible_v<classes_root_key>);

const std::wstring test_key = L"Software\\OrvaneRegKeyTest";

std::wstring default_of(const std::wstring& subkey) {
    std::array<wchar_t, 256> text{};
    DWORD size_bytes = sizeof text;
    const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, subkey.c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
                                        text.data(), &size_bytes);
    return status == ERROR_SUCCESS ? text.data() : L"status " + std::to_wstring(status);
}

/// Against the real registry, below HKEY_CURRENT_USER.
class RegKey : public testing::Test {
  protected:
    void SetUp() override { TearDown(); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, test_key.c_str()); }
};

TEST_F(RegKey, create_makes_the_key_and_sets_its_unnamed_value) {
    reg_key key;
    key.create(HKEY_CURRENT_USER, test_key + L"\\a\\b", reg_view::native, L"text");
    EXPECT_EQ(default_of(test_key + L"\\a\\b"), L"text");
}

TEST_F(RegKey, create_without_a_default_writes_no_value) {
    reg_key key;
    key.create(HKEY_CURRENT_USER, test_key, reg_view::native, L"");
    EXPECT_EQ(default_of(test_key), L"status 2");
    EXPECT_FALSE(key.has_value(L""));
}

TEST_F(RegKey, create_opens_an_existing_key_and_overwrites_its_default) {
    reg_key key;
    key.create(HKEY_CURRENT_USER, test_key, reg_view::native, L"first");
    key.set_dword(L"number", 7);
    key.close();
    key.create(HKEY_CURRENT_USER, test_key, reg_view::native, L"second");
    EXPECT_EQ(default_of(test_key), L"second");
    EXPECT_TRUE(key.has_value(L"number"));
    key.close();
    key.create(HKEY_CURRENT_USER, test_key, reg_view::native, L"");
    EXPECT_EQ(default_of(test_key), L"second");
}

TEST_F(RegKey, values_come_back_as_they_were_set) {
    reg_key key;
    key.create(HKEY_CURRENT_USER, test_key, reg_view::native, L"");
    key.set_dword(L"number", 0xF0800008);
    key.set_text(L"path", REG_EXPAND_SZ, L"%systemroot%");
    std::uint32_t number = 0;
    DWORD size_bytes = sizeof number;
    DWORD type = 0;
    EXPECT_EQ(
        RegGetValueW(HKEY_CURRENT_USER, test_key.c_str(), L"number", RRF_RT_ANY, &type, &number, &size_bytes),
        0);
    EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
    EXPECT_EQ(number, 0xF0800008U);
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, test_key.c_str(), L"path", RRF_RT_ANY | RRF_NOEXPAND, &type,
                           nullptr, &size_bytes),
              0);
    EXPECT_EQ(type, static_cast<DWORD>(REG_EXPAND_SZ));
    EXPECT_EQ(size_bytes, sizeof L"%systemroot%");
}

TEST_F(RegKey, open_of_a_missing_key_throws_with_its_place) {
    reg_key key;
    try {
        key.open(HKEY_CURRENT_USER, test_key, reg_view::native, true);
        FAIL() << "did not throw";
    } catch (const exception& error) {
        EXPECT_THAT(error.what(), testing::StartsWith("Win32:  "));
        EXPECT_THAT(error.what(), testing::EndsWith("\r\n (win_registry::open, RegOpenKeyExW)"));
    }
}

TEST_F(RegKey, open_for_reading_lets_nothing_be_written) {
    reg_key key;
    key.create(HKEY_CURRENT_USER, test_key, reg_view::native, L"");
    key.close();
    key.open(HKEY_CURRENT_USER, test_key, reg_view::native, true);
    EXPECT_THROW(key.set_dword(L"number", 1), exception);
    key.close();
    key.open(HKEY_CURRENT_USER, test_key, reg_view::native, false);
    key.set_dword(L"number", 1);
    EXPECT_TRUE(key.has_value(L"number"));
    key.remove_value(L"number");
    EXPECT_FALSE(key.has_value(L"number"));
}

TEST_F(RegKey, failed_write_names_function_file_and_line) {
    reg_key key;
    try {
        key.set_dword(L"number", 1);
        FAIL() << "did not throw";
    } catch (const exception& error) {
        EXPECT_THAT(error.what(),
                    testing::EndsWith("\r\n (ov::win::reg_key::internal_set_value, reg_key.cpp, 433)"));
        EXPECT_THAT(error.what(), testing::StartsWith("Win32:  "));
    }
}

TEST_F(RegKey, remove_of_a_missing_key_is_told_and_of_a_key_with_subkeys_thrown) {
    EXPECT_EQ(remove_key(HKEY_CURRENT_USER, test_key), ERROR_FILE_NOT_FOUND);
    reg_key key;
    key.create(HKEY_CURRENT_USER, test_key + L"\\sub", reg_view::native, L"");
    key.close();
    try {
        remove_key(HKEY_CURRENT_USER, test_key);
        FAIL() << "did not throw";
    } catch (const exception& error) {
        EXPECT_THAT(error.what(), HasSubstr("(win_registry::remove, RegDeleteKey)"));
    }
    EXPECT_EQ(remove_key(HKEY_CURRENT_USER, test_key + L"\\sub"), ERROR_SUCCESS);
    EXPECT_EQ(remove_key(HKEY_CURRENT_USER, test_key), ERROR_SUCCESS);
}

TEST_F(RegKey, remove_tree_takes_all_below_and_does_not_mind_a_missing_key) {
    reg_key key;
    key.create(HKEY_CURRENT_USER, test_key + L"\\a\\b\\c", reg_view::native, L"x");
    key.close();
    EXPECT_TRUE(remove_key_tree(HKEY_CURRENT_USER, test_key));
    EXPECT_EQ(default_of(test_key), L"status 2");
    EXPECT_TRUE(remove_key_tree(HKEY_CURRENT_USER, test_key));
}

TEST_F(RegKey, root_keys_stand_for_their_predefined_roots) {
    EXPECT_EQ(classes_root_key::root(), HKEY_CLASSES_ROOT);
    EXPECT_EQ(local_machine_key::root(), HKEY_LOCAL_MACHINE);
    local_machine_key key;
    EXPECT_EQ(key.remove(L"Software\\OrvaneNoSuchKey"), 2);
    EXPECT_TRUE(key.remove_tree(L"Software\\OrvaneNoSuchKey"));
}

}  // namespace
}  // namespace ov::win
