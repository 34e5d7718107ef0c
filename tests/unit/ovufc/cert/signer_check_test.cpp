// Real signatures, checked by the system.
#include "ovufc/cert/signer_check.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cwctype>
#include <string>
#include <vector>

#include "testkit/imports/import_patch.h"
#include "testkit/memory/failing_allocations.h"
#include "tests/unit/ovufc/cert/samples.h"

namespace ov::cert {
namespace {

using test::sample;

TEST(SignerCheck, signed_by_the_maker_is_true) {
    EXPECT_TRUE(is_signed_by_maker(sample(L"maker")));
}

TEST(SignerCheck, makers_name_in_other_letter_case_is_true) {
    EXPECT_TRUE(is_signed_by_maker(sample(L"other_case")));
}

TEST(SignerCheck, lack_of_memory_is_no_signature) {
    const std::wstring path = sample(L"maker");
    const int failures = test::fail_each_allocation(GetModuleHandleW(nullptr),
                                                    test::failing_allocations::mode::once, [&](auto& memory) {
                                                        const bool is_signed = is_signed_by_maker(path);
                                                        memory.pause();
                                                        EXPECT_EQ(is_signed, !memory.met());
                                                    });
    EXPECT_GE(failures, 1);
}

class SignerCheckRefusal : public testing::TestWithParam<const wchar_t*> {};

TEST_P(SignerCheckRefusal, file_is_not_the_makers) {
    EXPECT_FALSE(is_signed_by_maker(sample(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(otherSigners, SignerCheckRefusal,
                         testing::Values(L"other_maker", L"trailing_blank", L"leading_blank", L"longer",
                                         L"shorter", L"self_signed"));
INSTANTIATE_TEST_SUITE_P(badSignatures, SignerCheckRefusal,
                         testing::Values(L"unsigned", L"tampered", L"cut", L"text", L"no such file"));

// Wine does not look at the dates; the day that it does, this fails and the exception goes.
TEST(SignerCheck, expired_signer_is_refused_by_windows) {
    const bool under_wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    EXPECT_EQ(is_signed_by_maker(sample(L"expired")), under_wine);
}

TEST(SignerCheck, paths_that_name_no_file_are_false) {
    EXPECT_FALSE(is_signed_by_maker(L""));
    EXPECT_FALSE(is_signed_by_maker(L"C:\\"));
    EXPECT_FALSE(is_signed_by_maker(L"C:\\" + std::wstring(40'000, L'x')));
}

TEST(MakersName, letters_of_any_case_match) {
    EXPECT_TRUE(is_makers_name(L"Orvane, Inc."));
    EXPECT_TRUE(is_makers_name(L"ORVANE, INC."));
    EXPECT_TRUE(is_makers_name(L"orvane, inc."));
}

TEST(MakersName, other_lengths_never_match) {
    EXPECT_FALSE(is_makers_name(L""));
    EXPECT_FALSE(is_makers_name(L"Orvane, Inc"));
    EXPECT_FALSE(is_makers_name(L"Orvane, Inc. "));
    EXPECT_FALSE(is_makers_name(L"xOrvane, Inc."));
    EXPECT_FALSE(is_makers_name(std::wstring_view(L"Orvane, Inc.\0", 13)));
    EXPECT_FALSE(is_makers_name(std::wstring_view(L"Orvane, Inc.\0evil", 17)));
}

TEST(MakersName, other_characters_do_not_match) {
    EXPECT_FALSE(is_makers_name(L"0rvane, Inc."));
    EXPECT_FALSE(is_makers_name(L"Orvane; Inc."));
    EXPECT_FALSE(is_makers_name(L"Orvane, Inc,"));
    EXPECT_FALSE(is_makers_name(L"Orv\u00E1ne, Inc."));
}

std::vector<wint_t> folded;

// A locale that knows one more small letter o. None that this system has folds a letter beyond ASCII into the
// maker's name, so that only another fold shows who is asked.
wint_t fold_with_a_stroke(wint_t character) {
    folded.push_back(character);
    if (character == L'\u00D8') {
        return L'o';
    }
    return character >= L'A' && character <= L'Z' ? character - L'A' + L'a' : character;
}

TEST(MakersName, letters_are_folded_as_the_current_locale_folds_them) {
    EXPECT_FALSE(is_makers_name(L"\u00D8rvane, Inc."));
    const test::import_patch<wint_t(wint_t)> locale(GetModuleHandleW(nullptr), "msvcrt.dll;ucrtbase.dll",
                                                    "towlower", fold_with_a_stroke);
    EXPECT_TRUE(is_makers_name(L"\u00D8rvane, Inc."));
    EXPECT_FALSE(is_makers_name(L"\u00F8rvane, Inc."));
}

TEST(MakersName, comparison_runs_from_the_last_character_to_the_first) {
    folded.clear();
    const test::import_patch<wint_t(wint_t)> locale(GetModuleHandleW(nullptr), "msvcrt.dll;ucrtbase.dll",
                                                    "towlower", fold_with_a_stroke);
    EXPECT_FALSE(is_makers_name(L"orvane, inK."));
    EXPECT_EQ(folded, (std::vector<wint_t>{L'.', L'.', L'K', L'c'}));
}

}  // namespace
}  // namespace ov::cert
