#include "ovufc/cert/signer_check.h"

#include <windows.h>
#include <softpub.h>
#include <wintrust.h>

#include <algorithm>
#include <cstddef>
#include <cwctype>

#include "ovufc/cert/cert_context.h"

namespace ov::cert {

namespace {

constexpr std::wstring_view maker = L"Orvane, Inc.";

/// WINTRUST_DATA up to the last member that every Windows has; newer headers declare one more behind it.
constexpr DWORD trust_data_size = offsetof(WINTRUST_DATA, dwUIContext) + sizeof(DWORD);
static_assert(sizeof(void*) != 8 || trust_data_size == 80);
static_assert(sizeof(void*) != 8 || sizeof(WINTRUST_FILE_INFO) == 32);

bool has_valid_signature(const wchar_t* path) noexcept {
    WINTRUST_FILE_INFO file{};
    file.cbStruct = sizeof file;
    file.pcwszFilePath = path;

    WINTRUST_DATA data{};
    data.cbStruct = trust_data_size;
    data.dwUIChoice = WTD_UI_NONE;
    data.fdwRevocationChecks = WTD_REVOKE_NONE;
    data.dwUnionChoice = WTD_CHOICE_FILE;
    data.pFile = &file;
    data.dwStateAction = WTD_STATEACTION_VERIFY;
    data.dwProvFlags = WTD_CACHE_ONLY_URL_RETRIEVAL;

    GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
    const auto no_window = static_cast<HWND>(INVALID_HANDLE_VALUE);
    const LONG result = WinVerifyTrust(no_window, &action, &data);
    // The state of a verification that failed has to be freed too.
    data.dwStateAction = WTD_STATEACTION_CLOSE;
    WinVerifyTrust(no_window, &action, &data);
    return result == ERROR_SUCCESS;
}

}  // namespace

bool is_signed_by_maker(const std::wstring& path) noexcept {
    if (!has_valid_signature(path.c_str())) {
        return false;
    }
    try {
        cert_context signer;
        return signer.load_signer(path) && is_makers_name(signer.describe().subject_name);
    } catch (...) {
        return false;
    }
}

bool is_makers_name(std::wstring_view name) noexcept {
    return name.size() == maker.size() &&
           std::equal(name.rbegin(), name.rend(), maker.rbegin(), [](wchar_t left, wchar_t right) {
               return std::towlower(left) == std::towlower(right);
           });
}

}  // namespace ov::cert
