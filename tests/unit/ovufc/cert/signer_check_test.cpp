// Real signatures, checked by the system.
#include "ovufc/cert/signer_check.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/unit/ovufc/cert/samples.h"

namespace ov::cert {
namespace {

using test::sample;

TEST(SignerCheck, signedByTheMaker_isTrue) {
    EXPECT_TRUE(is_signed_by_maker(sample(L"maker")));
}

TEST(SignerCheck, makersNameInOtherLetterCase_isTrue) {
    EXPECT_TRUE(is_signed_by_maker(sample(L"other_case")));
}

class SignerCheckRefusal : public testing::TestWithParam<const wchar_t*> {};

TEST_P(SignerCheckRefusal, file_isNotTheMakers) {
    EXPECT_FALSE(is_signed_by_maker(sample(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(otherSigners, SignerCheckRefusal,
                         testing::Values(L"other_maker", L"trailing_blank", L"leading_blank", L"longer",
                                         L"shorter", L"self_signed"));
INSTANTIATE_TEST_SUITE_P(badSignatures, SignerCheckRefusal,
                         testing::Values(L"unsigned", L"tampered", L"cut", L"text", L"no such file"));

// Wine does not look at the dates; the day that it does, this fails and the exception goes.
TEST(SignerCheck, expiredSigner_isRefusedByWindows) {
    const bool under_wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    EXPECT_EQ(is_signed_by_maker(sample(L"expired")), under_wine);
}

TEST(SignerCheck, pathsThatNameNoFile_areFalse) {
    EXPECT_FALSE(is_signed_by_maker(L""));
    EXPECT_FALSE(is_signed_by_maker(L"C:\\"));
    EXPECT_FALSE(is_signed_by_maker(L"C:\\" + std::wstring(40'000, L'x')));
}

TEST(MakersName, lettersOfAnyCase_match) {
    EXPECT_TRUE(is_makers_name(L"Orvane, Inc."));
    EXPECT_TRUE(is_makers_name(L"ORVANE, INC."));
    EXPECT_TRUE(is_makers_name(L"orvane, inc."));
}

TEST(MakersName, otherLengths_neverMatch) {
    EXPECT_FALSE(is_makers_name(L""));
    EXPECT_FALSE(is_makers_name(L"Orvane, Inc"));
    EXPECT_FALSE(is_makers_name(L"Orvane, Inc. "));
    EXPECT_FALSE(is_makers_name(L"xOrvane, Inc."));
    EXPECT_FALSE(is_makers_name(std::wstring_view(L"Orvane, Inc.\0", 13)));
    EXPECT_FALSE(is_makers_name(std::wstring_view(L"Orvane, Inc.\0evil", 17)));
}

TEST(MakersName, otherCharacters_doNotMatch) {
    EXPECT_FALSE(is_makers_name(L"0rvane, Inc."));
    EXPECT_FALSE(is_makers_name(L"Orvane; Inc."));
    EXPECT_FALSE(is_makers_name(L"Orvane, Inc,"));
    EXPECT_FALSE(is_makers_name(L"Orv\u00E1ne, Inc."));
}

}  // namespace
}  // namespace ov::cert
