#include "ovufc/cert/cert_context.h"

#include <array>
#include <vector>

namespace ov::cert {

namespace {

constexpr DWORD both_encodings = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;
/// Room for a display name with its terminating zero; longer names come cut.
constexpr DWORD name_capacity_chars = 260;

struct store_traits {
    using type = HCERTSTORE;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { CertCloseStore(value, 0); }
};
using unique_store = win::unique_handle<store_traits>;

struct message_traits {
    using type = HCRYPTMSG;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { CryptMsgClose(value); }
};
using unique_message = win::unique_handle<message_traits>;

/// The CMSG_SIGNER_INFO of the message's first signer, with what it points to; empty when there is none.
std::vector<BYTE> first_signer_info(HCRYPTMSG message) {
    DWORD size_bytes = 0;
    if (CryptMsgGetParam(message, CMSG_SIGNER_INFO_PARAM, 0, nullptr, &size_bytes) == FALSE ||
        size_bytes < sizeof(CMSG_SIGNER_INFO)) {
        return {};
    }
    std::vector<BYTE> info(size_bytes);
    if (CryptMsgGetParam(message, CMSG_SIGNER_INFO_PARAM, 0, info.data(), &size_bytes) == FALSE) {
        return {};
    }
    return info;
}

/// The length of the name is taken from the call, not from the first zero: a name with a zero inside must not
/// pass for the part before it.
std::wstring display_name(PCCERT_CONTEXT certificate, DWORD flags) {
    std::array<wchar_t, name_capacity_chars> name;
    const DWORD written_chars = CertGetNameStringW(certificate, CERT_NAME_SIMPLE_DISPLAY_TYPE, flags, nullptr,
                                                   name.data(), name_capacity_chars);
    if (written_chars == 0 || written_chars > name_capacity_chars) {
        return {};
    }
    return {name.data(), written_chars - 1};
}

std::uint32_t key_spec_of(PCCERT_CONTEXT certificate) {
    DWORD size_bytes = 0;
    if (CertGetCertificateContextProperty(certificate, CERT_KEY_SPEC_PROP_ID, nullptr, &size_bytes) ==
            FALSE ||
        size_bytes != sizeof(std::uint32_t)) {
        return 0;
    }
    std::uint32_t key_spec = 0;
    return CertGetCertificateContextProperty(certificate, CERT_KEY_SPEC_PROP_ID, &key_spec, &size_bytes) !=
                   FALSE
               ? key_spec
               : 0;
}

}  // namespace

bool cert_context::load_signer(const std::wstring& path) {
    certificate.reset();
    DWORD encoding = 0;
    DWORD content_type = 0;
    DWORD format_type = 0;
    unique_store store;
    unique_message message;
    if (CryptQueryObject(CERT_QUERY_OBJECT_FILE, path.c_str(), CERT_QUERY_CONTENT_FLAG_PKCS7_SIGNED_EMBED,
                         CERT_QUERY_FORMAT_FLAG_BINARY, 0, &encoding, &content_type, &format_type,
                         store.put(), message.put(), nullptr) == FALSE) {
        return false;
    }
    const std::vector<BYTE> info = first_signer_info(message.get());
    if (info.empty()) {
        return false;
    }
    const auto& signer = *reinterpret_cast<const CMSG_SIGNER_INFO*>(info.data());
    CERT_INFO wanted{};
    wanted.Issuer = signer.Issuer;
    wanted.SerialNumber = signer.SerialNumber;
    certificate.reset(
        CertFindCertificateInStore(store.get(), encoding, 0, CERT_FIND_SUBJECT_CERT, &wanted, nullptr));
    return static_cast<bool>(certificate);
}

cert_description cert_context::describe() const {
    cert_description description;
    const PCCERT_CONTEXT held = certificate.get();
    if (held == nullptr) {
        return description;
    }
    description.self_signed = CertCompareCertificateName(both_encodings, &held->pCertInfo->Subject,
                                                         &held->pCertInfo->Issuer) != FALSE;
    description.key_spec = key_spec_of(held);
    description.public_key_length_bits =
        CertGetPublicKeyLength(both_encodings, &held->pCertInfo->SubjectPublicKeyInfo);
    description.subject_name = display_name(held, 0);
    description.issuer_name = display_name(held, CERT_NAME_ISSUER_FLAG);
    return description;
}

}  // namespace ov::cert
