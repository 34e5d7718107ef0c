#include "testkit/registry/registry_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ov::test {
namespace {

using testing::ElementsAre;

constexpr const wchar_t* test_key = L"Software\\OrvaneRegistryWatchTest";

HMODULE program() {
    return GetModuleHandleW(nullptr);
}

LSTATUS create_test_key(HKEY& key) {
    DWORD disposition = 0;
    return RegCreateKeyExW(HKEY_CURRENT_USER, test_key, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                           &disposition);
}

TEST(RegistryWatch, pass_through_reaches_the_registry_and_writes_it_down) {
    registry_watch watch(program(), registry_watch::mode::pass_through);
    HKEY key = nullptr;
    ASSERT_EQ(create_test_key(key), ERROR_SUCCESS);
    const DWORD number = 0x2A;
    EXPECT_EQ(RegSetValueExW(key, L"n", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), 4), 0);
    EXPECT_EQ(RegQueryValueExW(key, L"n", nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(RegQueryValueExW(key, L"other", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(watch.open_keys(), 1U);
    RegCloseKey(key);
    EXPECT_EQ(watch.open_keys(), 0U);
    EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, test_key), 0);
    EXPECT_THAT(watch.calls(),
                ElementsAre(R"(create HKCU "Software\OrvaneRegistryWatchTest" options 0 access F003F -> #1)",
                            R"(set #1 "n" REG_DWORD 4 2A)", R"(query #1 "n")", R"(query #1 "other" = 2)",
                            "close #1", R"(delete-tree HKCU "Software\OrvaneRegistryWatchTest")"));
}

TEST(RegistryWatch, simulate_leaves_the_registry_alone) {
    {
        registry_watch watch(program(), registry_watch::mode::simulate);
        HKEY key = nullptr;
        ASSERT_EQ(create_test_key(key), ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(L"ab"), 6), 0);
        RegCloseKey(key);
        EXPECT_EQ(watch.calls()[1], R"(set #1 (default) REG_SZ 6 "ab\0")");
    }
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, test_key, 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
}

TEST(RegistryWatch, answer_takes_the_place_of_a_call) {
    registry_watch watch(program(), registry_watch::mode::simulate);
    watch.answer = [](std::size_t number, const std::string&) -> std::optional<LSTATUS> {
        if (number == 0) {
            return ERROR_ACCESS_DENIED;
        }
        return std::nullopt;
    };
    HKEY key = nullptr;
    SetLastError(0);
    EXPECT_EQ(create_test_key(key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(GetLastError(), registry_watch::injected_last_error);
    EXPECT_EQ(watch.calls()[0],
              R"(create HKCU "Software\OrvaneRegistryWatchTest" options 0 access F003F = 5)");
    EXPECT_EQ(create_test_key(key), ERROR_SUCCESS);
}

}  // namespace
}  // namespace ov::test
