// orvcert: the certificate of an authority among the machine's trusted roots.
//
// For development machines and test prefixes: files signed with the development authority are valid only
// where its certificate is trusted.
#include <windows.h>
#include <wincrypt.h>

#include <string>
#include <vector>

#include "ovufc/cert/cert_context.h"
#include "ovufc/win/handle.h"
#include "tools/command_line/console.h"
#include "tools/command_line/program.h"

namespace {

constexpr const wchar_t* help =
    L"orvcert install|remove FILE\n"
    L"\n"
    L"Puts the certificate in FILE (DER) among the machine's trusted roots, or takes it out.\n"
    L"\n"
    L"Exit codes: 0 done, 1 failed, 2 wrong usage.";

constexpr DWORD largest_certificate_bytes = 64 * 1024;

std::vector<BYTE> read_file(const std::wstring& path) {
    const ov::win::unique_file file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
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

int run(ov::command_line::arguments& words) {
    const std::wstring verb = words.take_word(L"what to do: install or remove");
    if (verb != L"install" && verb != L"remove") {
        throw ov::command_line::usage_error(L"say install or remove, not '" + verb + L"'");
    }
    const std::wstring path = words.take_word(L"a file with a certificate");
    words.expect_end();
    const std::vector<BYTE> bytes = read_file(path);
    const ov::cert::unique_certificate certificate(
        bytes.empty() ? nullptr
                      : CertCreateCertificateContext(X509_ASN_ENCODING, bytes.data(),
                                                     static_cast<DWORD>(bytes.size())));
    if (!certificate) {
        ov::command_line::print_note(L"orvcert: " + path + L" holds no certificate");
        return 1;
    }
    if (!change_trusted_roots(verb == L"install", certificate.get())) {
        ov::command_line::print_note(L"orvcert: the store of trusted roots could not be changed (error " +
                                     std::to_wstring(GetLastError()) + L")");
        return 1;
    }
    return 0;
}

}  // namespace

int main() {
    return ov::command_line::run_program(L"orvcert", help, ov::command_line::words_of_process(), run);
}
