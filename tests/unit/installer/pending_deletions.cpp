#include "tests/unit/installer/pending_deletions.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

namespace ov::test {
namespace {

constexpr wchar_t key[] = L"System\\CurrentControlSet\\Control\\Session Manager";
constexpr wchar_t value[] = L"PendingFileRenameOperations";

}  // namespace

pending_deletions::~pending_deletions() {
    if (before_.empty()) {
        RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key, value);
    } else {
        RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, value, REG_MULTI_SZ, before_.data(),
                        static_cast<DWORD>(before_.size() * sizeof(wchar_t)));
    }
}

bool pending_deletions::contain(const std::wstring& path) const {
    const std::wstring wanted = L"\\??\\" + path + std::wstring(2, L'\0');
    const std::vector<wchar_t> now = read();
    return std::search(now.begin(), now.end(), wanted.begin(), wanted.end()) != now.end();
}

std::vector<wchar_t> pending_deletions::read() {
    DWORD size_bytes = 0;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_MULTI_SZ, nullptr, nullptr, &size_bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    std::vector<wchar_t> text(size_bytes / sizeof(wchar_t));
    RegGetValueW(HKEY_LOCAL_MACHINE, key, value, RRF_RT_REG_MULTI_SZ, nullptr, text.data(), &size_bytes);
    text.resize(size_bytes / sizeof(wchar_t));
    return text;
}

}  // namespace ov::test
