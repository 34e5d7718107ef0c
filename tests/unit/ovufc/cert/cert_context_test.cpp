#include "ovufc/cert/cert_context.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testkit/imports/import_patch.h"
#include "tests/unit/ovufc/cert/samples.h"

namespace ov::cert {
namespace {

using test::import_patch;
using test::sample;

// What the patched functions saw and what the patches gave; one test at a time.
int stores_closed, messages_closed, certificates_freed, parameter_calls;
int failing_parameter_call;
BOOL(WINAPI* real_get_parameter)(HCRYPTMSG, DWORD, DWORD, void*, DWORD*);
BOOL(WINAPI* real_close_store)(HCERTSTORE, DWORD);
BOOL(WINAPI* real_close_message)(HCRYPTMSG);
BOOL(WINAPI* real_free_certificate)(PCCERT_CONTEXT);

BOOL WINAPI counted_close_store(HCERTSTORE store, DWORD flags) {
    EXPECT_EQ(flags, 0U);
    ++stores_closed;
    return real_close_store(store, flags);
}
BOOL WINAPI counted_close_message(HCRYPTMSG message) {
    ++messages_closed;
    return real_close_message(message);
}
BOOL WINAPI counted_free(PCCERT_CONTEXT certificate) {
    ++certificates_freed;
    return real_free_certificate(certificate);
}
BOOL WINAPI counted_get_parameter(HCRYPTMSG message, DWORD type, DWORD index, void* data, DWORD* size_bytes) {
    EXPECT_EQ(type, 6U);
    EXPECT_EQ(index, 0U);
    ++parameter_calls;
    EXPECT_EQ(data == nullptr, parameter_calls == 1) << "first the size, then the data";
    if (parameter_calls == failing_parameter_call) {
        return FALSE;
    }
    return real_get_parameter(message, type, index, data, size_bytes);
}

class CertContext : public testing::Test {
  protected:
    CertContext() {
        stores_closed = messages_closed = certificates_freed = parameter_calls = failing_parameter_call = 0;
        real_close_store = close_store.original();
        real_close_message = close_message.original();
        real_free_certificate = free_certificate.original();
        real_get_parameter = get_parameter.original();
    }

    const HMODULE program = GetModuleHandleW(nullptr);
    const import_patch<decltype(CertCloseStore)> close_store{program, "crypt32.dll", "CertCloseStore",
                                                             counted_close_store};
    const import_patch<decltype(CryptMsgClose)> close_message{program, "crypt32.dll", "CryptMsgClose",
                                                              counted_close_message};
    const import_patch<decltype(CertFreeCertificateContext)> free_certificate{
        program, "crypt32.dll", "CertFreeCertificateContext", counted_free};
    const import_patch<decltype(CryptMsgGetParam)> get_parameter{program, "crypt32.dll", "CryptMsgGetParam",
                                                                 counted_get_parameter};
};

TEST_F(CertContext, signer_of_a_file_is_described) {
    cert_context context;
    ASSERT_TRUE(context.load_signer(sample(L"maker")));
    const cert_description description = context.describe();
    EXPECT_EQ(description.subject_name, L"Orvane, Inc.");
    EXPECT_THAT(description.issuer_name, testing::StartsWith(L"Orvane Vaultkeep development"));
    EXPECT_FALSE(description.self_signed);
    EXPECT_EQ(description.key_spec, 0U);
    EXPECT_EQ(description.public_key_length_bits, 2048U);
}

TEST_F(CertContext, certificate_of_its_own_issuer_is_self_signed) {
    cert_context context;
    ASSERT_TRUE(context.load_signer(sample(L"self_signed")));
    const cert_description description = context.describe();
    EXPECT_TRUE(description.self_signed);
    EXPECT_EQ(description.issuer_name, description.subject_name);
    EXPECT_EQ(description.public_key_length_bits, 3072U);
}

TEST_F(CertContext, blank_at_the_end_of_a_name_is_kept) {
    cert_context context;
    ASSERT_TRUE(context.load_signer(sample(L"trailing_blank")));
    EXPECT_EQ(context.describe().subject_name, L"Orvane, Inc. ");
}

TEST_F(CertContext, empty_is_described_as_empty) {
    const cert_description description = cert_context().describe();
    EXPECT_EQ(description.subject_name, L"");
    EXPECT_EQ(description.issuer_name, L"");
    EXPECT_FALSE(description.self_signed);
    EXPECT_EQ(description.public_key_length_bits, 0U);
}

TEST_F(CertContext, files_without_signature_have_no_signer) {
    for (const wchar_t* name : {L"unsigned", L"text", L"no such file"}) {
        cert_context context;
        EXPECT_FALSE(context.load_signer(sample(name))) << testing::PrintToString(name);
        EXPECT_EQ(context.describe().subject_name, L"");
    }
    EXPECT_EQ(parameter_calls, 0);
    EXPECT_EQ(certificates_freed, 0);
}

TEST_F(CertContext, success_closes_all_and_frees_the_certificate_at_its_end) {
    {
        cert_context context;
        ASSERT_TRUE(context.load_signer(sample(L"maker")));
        EXPECT_EQ(parameter_calls, 2);
        EXPECT_EQ(stores_closed, 1);
        EXPECT_EQ(messages_closed, 1);
        EXPECT_EQ(certificates_freed, 0);
    }
    EXPECT_EQ(certificates_freed, 1);
}

TEST_F(CertContext, second_signer_replaces_the_first) {
    cert_context context;
    ASSERT_TRUE(context.load_signer(sample(L"maker")));
    parameter_calls = 0;
    ASSERT_TRUE(context.load_signer(sample(L"other_maker")));
    EXPECT_EQ(certificates_freed, 1);
    EXPECT_EQ(context.describe().subject_name, L"Another Maker, Inc.");
    EXPECT_FALSE(context.load_signer(sample(L"unsigned")));
    EXPECT_EQ(certificates_freed, 2);
}

TEST_F(CertContext, signer_without_size_closes_all) {
    failing_parameter_call = 1;
    cert_context context;
    EXPECT_FALSE(context.load_signer(sample(L"maker")));
    EXPECT_EQ(parameter_calls, 1);
    EXPECT_EQ(stores_closed, 1);
    EXPECT_EQ(messages_closed, 1);
}

TEST_F(CertContext, signer_without_data_closes_all) {
    failing_parameter_call = 2;
    cert_context context;
    EXPECT_FALSE(context.load_signer(sample(L"maker")));
    EXPECT_EQ(stores_closed, 1);
    EXPECT_EQ(messages_closed, 1);
}

TEST_F(CertContext, certificate_that_is_not_there_closes_all) {
    const import_patch<decltype(CertFindCertificateInStore)> find(
        program, "crypt32.dll", "CertFindCertificateInStore",
        [](HCERTSTORE, DWORD encoding, DWORD flags, DWORD type, const void* wanted, PCCERT_CONTEXT previous) {
            EXPECT_EQ(encoding, 0x10001U);
            EXPECT_EQ(flags, 0U);
            EXPECT_EQ(type, 0xB0000U);
            EXPECT_GT(static_cast<const CERT_INFO*>(wanted)->SerialNumber.cbData, 0U);
            EXPECT_GT(static_cast<const CERT_INFO*>(wanted)->Issuer.cbData, 0U);
            EXPECT_EQ(previous, nullptr);
            return PCCERT_CONTEXT{};
        });
    cert_context context;
    EXPECT_FALSE(context.load_signer(sample(L"maker")));
    EXPECT_EQ(stores_closed, 1);
    EXPECT_EQ(messages_closed, 1);
    EXPECT_EQ(certificates_freed, 0);
}

TEST_F(CertContext, query_asks_for_an_embedded_signature) {
    const import_patch<decltype(CryptQueryObject)> query(
        program, "crypt32.dll", "CryptQueryObject",
        [](DWORD object, const void* path, DWORD content, DWORD format, DWORD flags, DWORD* encoding,
           DWORD* content_type, DWORD* format_type, HCERTSTORE* store, HCRYPTMSG* message,
           const void** context) {
            EXPECT_EQ(object, 1U);
            EXPECT_STREQ(static_cast<const wchar_t*>(path), L"C:\\some.dll");
            EXPECT_EQ(content, 0x400U);
            EXPECT_EQ(format, 2U);
            EXPECT_EQ(flags, 0U);
            EXPECT_TRUE(encoding != nullptr && content_type != nullptr && format_type != nullptr);
            EXPECT_TRUE(store != nullptr && message != nullptr);
            EXPECT_EQ(context, nullptr);
            return FALSE;
        });
    cert_context context;
    EXPECT_FALSE(context.load_signer(L"C:\\some.dll"));
    EXPECT_EQ(stores_closed + messages_closed, 0);
}

TEST_F(CertContext, name_that_cannot_be_read_is_empty) {
    cert_context context;
    ASSERT_TRUE(context.load_signer(sample(L"maker")));
    const import_patch<decltype(CertGetNameStringW)> name(
        program, "crypt32.dll", "CertGetNameStringW",
        [](PCCERT_CONTEXT, DWORD type, DWORD flags, void* parameter, LPWSTR, DWORD capacity) {
            EXPECT_EQ(type, 4U);
            EXPECT_TRUE(flags == 0 || flags == 1);
            EXPECT_EQ(parameter, nullptr);
            EXPECT_EQ(capacity, 260U);
            return DWORD{0};
        });
    EXPECT_EQ(context.describe().subject_name, L"");
    EXPECT_EQ(context.describe().issuer_name, L"");
}

TEST_F(CertContext, name_with_a_zero_inside_is_taken_whole) {
    cert_context context;
    ASSERT_TRUE(context.load_signer(sample(L"maker")));
    const import_patch<decltype(CertGetNameStringW)> name(
        program, "crypt32.dll", "CertGetNameStringW",
        [](PCCERT_CONTEXT, DWORD, DWORD, void*, LPWSTR buffer, DWORD) {
            std::copy_n(L"Orvane, Inc.\0evil", 18, buffer);
            return DWORD{18};
        });
    EXPECT_EQ(context.describe().subject_name.size(), 17U);
}

TEST_F(CertContext, key_specification_counts_only_at_four_bytes) {
    cert_context context;
    ASSERT_TRUE(context.load_signer(sample(L"maker")));
    static DWORD reported_bytes;
    const import_patch<decltype(CertGetCertificateContextProperty)> property(
        program, "crypt32.dll", "CertGetCertificateContextProperty",
        [](PCCERT_CONTEXT, DWORD id, void* data, DWORD* size_bytes) {
            EXPECT_EQ(id, 6U);
            *size_bytes = reported_bytes;
            if (data != nullptr) {
                *static_cast<DWORD*>(data) = 2;
            }
            return TRUE;
        });
    reported_bytes = 4;
    EXPECT_EQ(context.describe().key_spec, 2U);
    reported_bytes = 8;
    EXPECT_EQ(context.describe().key_spec, 0U);
}

}  // namespace
}  // namespace ov::cert
