// How the system is asked whether a signature is valid, and what its answers lead to. The answers are given
// through the import table: Wine trusts every chain, so the real ones cannot be had here.
#include <gtest/gtest.h>
#include <windows.h>
#include <softpub.h>
#include <wintrust.h>

#include <cstring>
#include <vector>

#include "ovufc/cert/signer_check.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/ovufc/cert/samples.h"

namespace ov::cert {
namespace {

using test::import_patch;
using test::sample;

struct trust_call {
    HWND window;
    GUID action;
    const void* address;
    WINTRUST_DATA data;
    WINTRUST_FILE_INFO file;
    std::wstring path;
};

std::vector<trust_call> calls;
LONG answer;
int queries;

const HANDLE state_of_verification = reinterpret_cast<HANDLE>(0x1234);

LONG WINAPI recorded_verify(HWND window, GUID* action, LPVOID data) {
    trust_call call{window, *action, data, *static_cast<WINTRUST_DATA*>(data), {}, {}};
    call.file = *call.data.pFile;
    call.path = call.file.pcwszFilePath;
    calls.push_back(call);
    if (call.data.dwStateAction == WTD_STATEACTION_VERIFY) {
        static_cast<WINTRUST_DATA*>(data)->hWVTStateData = state_of_verification;
        return answer;
    }
    // Closing may succeed although verifying failed, and the other way round.
    return answer == 0 ? 1 : 0;
}

BOOL WINAPI counted_query(DWORD, const void*, DWORD, DWORD, DWORD, DWORD*, DWORD*, DWORD*, HCERTSTORE*,
                          HCRYPTMSG*, const void**) {
    ++queries;
    return FALSE;
}

class TrustCall : public testing::Test {
  protected:
    TrustCall() {
        calls.clear();
        answer = 0;
        queries = 0;
    }

    const HMODULE program = GetModuleHandleW(nullptr);
    const import_patch<decltype(WinVerifyTrust)> verify{program, "wintrust.dll", "WinVerifyTrust",
                                                        recorded_verify};
};

TEST_F(TrustCall, verification_is_asked_for_and_closed_with_the_same_data) {
    EXPECT_TRUE(is_signed_by_maker(sample(L"maker")));
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].data.dwStateAction, 1U);
    EXPECT_EQ(calls[1].data.dwStateAction, 2U);
    EXPECT_EQ(calls[0].address, calls[1].address);
    EXPECT_EQ(calls[1].data.hWVTStateData, state_of_verification);
}

TEST_F(TrustCall, every_field_is_as_it_must_be) {
    EXPECT_TRUE(is_signed_by_maker(sample(L"maker")));
    ASSERT_EQ(calls.size(), 2U);
    const GUID generic_verify = WINTRUST_ACTION_GENERIC_VERIFY_V2;
    for (const trust_call& call : calls) {
        EXPECT_EQ(call.window, static_cast<HWND>(INVALID_HANDLE_VALUE));
        EXPECT_EQ(std::memcmp(&call.action, &generic_verify, sizeof(GUID)), 0);
        EXPECT_EQ(call.data.cbStruct, 80U);
        EXPECT_EQ(call.data.pPolicyCallbackData, nullptr);
        EXPECT_EQ(call.data.pSIPClientData, nullptr);
        EXPECT_EQ(call.data.dwUIChoice, 2U);
        EXPECT_EQ(call.data.fdwRevocationChecks, 0U);
        EXPECT_EQ(call.data.dwUnionChoice, 1U);
        EXPECT_EQ(call.data.pwszURLReference, nullptr);
        EXPECT_EQ(call.data.dwProvFlags, 0x1000U);
        EXPECT_EQ(call.data.dwUIContext, 0U);
        EXPECT_EQ(call.file.cbStruct, 32U);
        EXPECT_EQ(call.file.hFile, nullptr);
        EXPECT_EQ(call.file.pgKnownSubject, nullptr);
        EXPECT_EQ(call.path, sample(L"maker"));
    }
    EXPECT_EQ(calls[0].data.hWVTStateData, nullptr);
}

class TrustCallRefusal : public TrustCall, public testing::WithParamInterface<LONG> {};

TEST_P(TrustCallRefusal, answer_is_false_and_the_verification_is_closed) {
    const import_patch<decltype(CryptQueryObject)> query(program, "crypt32.dll", "CryptQueryObject",
                                                         counted_query);
    answer = GetParam();
    EXPECT_FALSE(is_signed_by_maker(sample(L"maker")));
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[1].data.dwStateAction, 2U);
    EXPECT_EQ(queries, 0) << "the certificate of a bad signature is not looked at";
}

INSTANTIATE_TEST_SUITE_P(answers, TrustCallRefusal,
                         testing::Values(static_cast<LONG>(0x800B0100),  // no signature
                                         static_cast<LONG>(0x800B0101),  // expired
                                         static_cast<LONG>(0x800B0109),  // root not trusted
                                         static_cast<LONG>(0x800B010C),  // revoked
                                         static_cast<LONG>(0x80096010),  // changed after signing
                                         1));

TEST_F(TrustCall, valid_signature_without_signer_is_false) {
    const import_patch<decltype(CryptQueryObject)> query(program, "crypt32.dll", "CryptQueryObject",
                                                         counted_query);
    EXPECT_FALSE(is_signed_by_maker(sample(L"maker")));
    EXPECT_EQ(queries, 1);
}

TEST_F(TrustCall, valid_signature_of_another_is_false) {
    EXPECT_FALSE(is_signed_by_maker(sample(L"other_maker")));
}

}  // namespace
}  // namespace ov::cert
