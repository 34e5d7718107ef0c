#include "tests/ui/screenshot.h"

#include <windows.h>

#include <algorithm>

#include "tests/support/child_process.h"
#include "tests/support/shipped_module.h"

namespace ov::test {

namespace {

constexpr DWORD start_limit_ms = 10000;
constexpr DWORD picture_limit_ms = 5000;
constexpr DWORD poll_ms = 50;

std::wstring screenshots_folder() {
    std::wstring folder = program_directory();
    folder.resize(folder.find_last_of(L'\\', folder.size() - 2) + 1);
    folder += L"screenshots\\";
    CreateDirectoryW(folder.c_str(), nullptr);
    return folder;
}

/// The host's name of a file on the drive that stands for the host's root.
std::wstring host_path(const std::wstring& path) {
    std::wstring host = path.substr(2);
    std::replace(host.begin(), host.end(), L'\\', L'/');
    return host;
}

bool is_complete(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    return GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) && data.nFileSizeLow != 0;
}

}  // namespace

void take_screenshot(const std::wstring& name) {
    const std::wstring path = screenshots_folder() + name + L".png";
    DeleteFileW(path.c_str());
    child_process tool(L"C:\\windows\\system32\\start.exe",
                       {L"/unix", L"/usr/bin/import", L"-window", L"root", host_path(path)});
    (void)tool.wait(start_limit_ms);
    for (DWORD waited = 0; waited < picture_limit_ms && !is_complete(path); waited += poll_ms) {
        Sleep(poll_ms);
    }
}

}  // namespace ov::test
