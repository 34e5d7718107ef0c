// orvcert install|remove FILE: the certificate in FILE (DER) among the machine's trusted roots.
//
// For development machines and test prefixes: files signed with the development authority are valid only
// where its certificate is trusted.
#include <windows.h>
#include <wincrypt.h>

#include <cstdio>
#include <cwchar>
#include <vector>

#include "ovufc/cert/cert_context.h"
#include "ovufc/win/handle.h"

namespace {

constexpr DWORD largest_certificate_bytes = 64 * 1024;

std::vector<BYTE> read_file(const wchar_t* path) {
    const ov::win::unique_file file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                                FILE_ATTRIBUTE_NORMAL, nullptr));
    std::vector<BYTE> bytes(largest_certificate_bytes);
    DWORD read_bytes = 0;
    if (!file ||
        ReadFile(file.get(), bytes.data(), largest_certificate_bytes, &read_bytes, nullptr) == FALSE) {
        return {};
    }
    bytes.resize(read_bytes);
    return bytes;
}

bool remove(HCERTSTORE store, PCCERT_CONTEXT certificate) {
    const PCCERT_CONTEXT found =
        CertFindCertificateInStore(store, X509_ASN_ENCODING, 0, CERT_FIND_EXISTING, certificate, nullptr);
    return found == nullptr || CertDeleteCertificateFromStore(found) != FALSE;
}

bool change_trusted_roots(bool install, PCCERT_CONTEXT certificate) {
    const HCERTSTORE roots =
        CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_LOCAL_MACHINE, L"Root");
    if (roots == nullptr) {
        return false;
    }
    const bool done = install ? CertAddCertificateContextToStore(
                                    roots, certificate, CERT_STORE_ADD_REPLACE_EXISTING, nullptr) != FALSE
                              : remove(roots, certificate);
    const DWORD error = GetLastError();
    const bool closed = CertCloseStore(roots, 0) != FALSE;
    SetLastError(error);
    return done && closed;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const bool install = count == 3 && std::wcscmp(arguments[1], L"install") == 0;
    if (!install && !(count == 3 && std::wcscmp(arguments[1], L"remove") == 0)) {
        std::fputs("orvcert install|remove FILE\n", stderr);
        return 2;
    }
    const std::vector<BYTE> bytes = read_file(arguments[2]);
    const ov::cert::unique_certificate certificate(
        bytes.empty() ? nullptr
                      : CertCreateCertificateContext(X509_ASN_ENCODING, bytes.data(),
                                                     static_cast<DWORD>(bytes.size())));
    if (!certificate) {
        std::fprintf(stderr, "orvcert: %ls holds no certificate\n", arguments[2]);
        return 1;
    }
    if (!change_trusted_roots(install, certificate.get())) {
        std::fprintf(stderr, "orvcert: the store of trusted roots could not be changed (error %lu)\n",
                     GetLastError());
        return 1;
    }
    return 0;
}
