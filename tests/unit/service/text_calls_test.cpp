// What the conversions ask of the system.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "service/text.h"
#include "testkit/imports/import_patch.h"

namespace {

using ov::service::from_utf8;
using ov::service::to_utf8;
using ov::test::import_patch;

struct conversion {
    UINT code_page;
    DWORD flags;
    int length;
    int capacity;
    bool has_default_character;

    bool operator==(const conversion&) const = default;
};
std::vector<conversion> conversions;
bool fails = false;

// Fills all that it is offered.
int WINAPI narrow(UINT code_page, DWORD flags, LPCWSTR, int length, LPSTR buffer, int capacity,
                  LPCSTR default_character, LPBOOL used_default) {
    conversions.push_back(
        {code_page, flags, length, capacity, default_character != nullptr || used_default != nullptr});
    if (fails) {
        return 0;
    }
    std::fill_n(buffer, capacity, 'x');
    return capacity;
}

int WINAPI widen(UINT code_page, DWORD flags, LPCSTR, int length, LPWSTR buffer, int capacity) {
    conversions.push_back({code_page, flags, length, capacity, false});
    if (fails) {
        return 0;
    }
    std::fill_n(buffer, capacity, L'x');
    return capacity;
}

class TextCalls : public testing::Test {
  protected:
    TextCalls() {
        conversions.clear();
        fails = false;
    }

  private:
    import_patch<decltype(WideCharToMultiByte)> narrow_{GetModuleHandleW(nullptr), "kernel32.dll",
                                                        "WideCharToMultiByte", narrow};
    import_patch<decltype(MultiByteToWideChar)> widen_{GetModuleHandleW(nullptr), "kernel32.dll",
                                                       "MultiByteToWideChar", widen};
};

TEST_F(TextCalls, wide_text_is_offered_four_bytes_a_unit_and_one) {
    const std::string converted = to_utf8(L"abc");
    EXPECT_EQ(conversions, (std::vector<conversion>{{65001, 0, 3, 4 * 3 + 1, false}}));
    EXPECT_EQ(converted, std::string(13, 'x'));
    (void)to_utf8(std::wstring(1000, L'a'));
    EXPECT_EQ(conversions.back(), (conversion{65001, 0, 1000, 4001, false}));
}

TEST_F(TextCalls, narrow_text_is_offered_a_unit_a_byte_and_one) {
    const std::wstring converted = from_utf8("abc");
    EXPECT_EQ(conversions, (std::vector<conversion>{{65001, 0, 3, 4, false}}));
    EXPECT_EQ(converted, L"xxxx");
}

TEST_F(TextCalls, empty_text_asks_nobody) {
    EXPECT_EQ(to_utf8(L""), "");
    EXPECT_EQ(from_utf8(""), L"");
    EXPECT_TRUE(conversions.empty());
}

TEST_F(TextCalls, failed_conversion_is_empty) {
    fails = true;
    EXPECT_EQ(to_utf8(L"abc"), "");
    EXPECT_EQ(from_utf8("abc"), L"");
    EXPECT_EQ(conversions.size(), 2u);
}

}  // namespace
