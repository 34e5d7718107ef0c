#include "testkit/registry/registry_snapshot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::wstring test_key = L"Software\\OrvaneSnapshotTest";

void set(const wchar_t* subkey, const wchar_t* name, const std::wstring& text) {
    RegSetKeyValueW(HKEY_CURRENT_USER, (test_key + subkey).c_str(), name, REG_SZ, text.c_str(),
                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

class RegistrySnapshot : public testing::Test {
  protected:
    void SetUp() override { TearDown(); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, test_key.c_str()); }
};

TEST_F(RegistrySnapshot, missing_key_is_empty) {
    EXPECT_THAT(take_registry_snapshot(HKEY_CURRENT_USER, test_key), IsEmpty());
}

TEST_F(RegistrySnapshot, comparison_tells_keys_and_values_apart) {
    set(L"\\a", L"same", L"1");
    set(L"\\a", L"other", std::wstring(100'000, L'x'));
    set(L"\\gone\\deep", nullptr, L"1");
    const auto before = take_registry_snapshot(HKEY_CURRENT_USER, test_key);
    EXPECT_THAT(compare(before, take_registry_snapshot(HKEY_CURRENT_USER, test_key)).changed, IsEmpty());

    set(L"\\a", L"other", std::wstring(100'000, L'y'));
    set(L"\\b", L"new", L"");
    RegDeleteTreeW(HKEY_CURRENT_USER, (test_key + L"\\gone").c_str());
    const auto difference = compare(before, take_registry_snapshot(HKEY_CURRENT_USER, test_key));
    EXPECT_THAT(difference.added, ElementsAre(test_key + L"\\b", test_key + L"\\b : new"));
    EXPECT_THAT(difference.changed, ElementsAre(test_key + L"\\a : other"));
    EXPECT_THAT(difference.removed,
                ElementsAre(test_key + L"\\gone", test_key + L"\\gone\\deep", test_key + L"\\gone\\deep : "));
}

}  // namespace
}  // namespace ov::test
