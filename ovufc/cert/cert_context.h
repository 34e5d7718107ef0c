#pragma once

#include <windows.h>
#include <wincrypt.h>

#include <cstdint>
#include <string>

#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::cert {

/// What `cert_context::describe` tells of a certificate.
struct cert_description {
    std::wstring subject_name;  // simple display name of the subject; empty when it has none
    std::wstring issuer_name;   // the same of the issuer
    bool self_signed = false;   // subject and issuer are the same name
    std::uint32_t key_spec = 0;
    std::uint32_t public_key_length_bits = 0;
};

struct certificate_traits {
    using type = PCCERT_CONTEXT;
    static type invalid() noexcept { return nullptr; }
    static void close(type value) noexcept { CertFreeCertificateContext(value); }
};
using unique_certificate = win::unique_handle<certificate_traits>;

/// Owns one certificate; freed with the object. Empty until `load_signer` succeeds. For one thread at a time.
class cert_context : private noncopyable {
  public:
    cert_context() noexcept = default;
    virtual ~cert_context() = default;

    /// Holds the certificate of the first signer of the signature embedded in the file at `path`. False, and
    /// empty, when there is no such signature or its certificate is not among those that it carries. Says
    /// nothing of whether the signature is valid. Throws std::bad_alloc only.
    [[nodiscard]] bool load_signer(const std::wstring& path);

    /// The description of the certificate held; all empty when there is none. Throws std::bad_alloc only.
    [[nodiscard]] cert_description describe() const;

  private:
    unique_certificate certificate;
};

}  // namespace ov::cert
