#include "tests/unit/companions/devservice/link_maker.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <vector>

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/text.h"
#include "testkit/process/child_process.h"

namespace ov::devservice {
namespace {

/// The path as the system below Wine knows it.
std::wstring unix_path(const std::wstring& path) {
    using converter = char*(CDECL*)(LPCWSTR);
    const auto convert = reinterpret_cast<converter>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    char* narrow = convert == nullptr ? nullptr : convert(path.c_str());
    const std::wstring result = from_utf8(narrow == nullptr ? "" : narrow).value_or(std::wstring());
    HeapFree(GetProcessHeap(), 0, narrow);
    EXPECT_FALSE(result.empty()) << "links are made for Wine only";
    return result;
}

/// Such a program is no process of Wine's, so that nothing tells when it has ended but what it has done.
void run_until(const wchar_t* program, const std::vector<std::wstring>& arguments, const std::wstring& path,
               bool there) {
    constexpr DWORD patience_ms = 20'000;
    constexpr DWORD poll_ms = 5;
    const test::child_process started(std::wstring(L"\\\\?\\unix\\usr\\bin\\") + program, arguments);
    const ULONGLONG start_ms = GetTickCount64();
    while ((attributes_of(path) != INVALID_FILE_ATTRIBUTES) != there) {
        ASSERT_LT(GetTickCount64() - start_ms, patience_ms) << to_utf8_lossy(path);
        Sleep(poll_ms);
    }
}

}  // namespace

void make_link(const std::wstring& path, const std::wstring& target) {
    run_until(L"ln", {L"-s", unix_path(target), unix_path(path)}, path, true);
}

void remove_link(const std::wstring& path) {
    run_until(L"rm", {unix_path(path)}, path, false);
}

}  // namespace ov::devservice
