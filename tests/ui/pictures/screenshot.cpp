#include "tests/ui/pictures/screenshot.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "testkit/process/child_process.h"
#include "testkit/process/shipped_module.h"
#include "tests/ui/pictures/picture.h"

namespace ov::test {

namespace {

constexpr DWORD start_limit_ms = 10000;
constexpr DWORD picture_limit_ms = 20000;
constexpr DWORD poll_ms = 50;
// Pictures of the whole display have more than a thousand, those of a dialog more than eighty.
constexpr std::size_t least_colours = 50;

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

/// The tool goes on writing after its starter has ended.
std::optional<picture_facts> wait_for_picture(const std::wstring& path) {
    for (DWORD waited = 0;; waited += poll_ms) {
        const auto facts = read_picture(path);
        if (facts || waited >= picture_limit_ms) {
            return facts;
        }
        Sleep(poll_ms);
    }
}

RECT whole_display() {
    return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

/// As the tool names a part of the display.
std::wstring geometry(const RECT& area) {
    return std::to_wstring(area.right - area.left) + L"x" + std::to_wstring(area.bottom - area.top) + L"+" +
           std::to_wstring(area.left) + L"+" + std::to_wstring(area.top);
}

}  // namespace

void take_screenshot(const std::wstring& name) {
    take_screenshot(name, whole_display());
}

void take_screenshot(const std::wstring& name, const RECT& area) {
    const std::wstring path = screenshots_folder() + name + L".png";
    DeleteFileW(path.c_str());
    child_process tool(L"C:\\windows\\system32\\start.exe",
                       {L"/unix", L"/usr/bin/import", L"-window", L"root", L"-crop", geometry(area),
                        L"+repage", host_path(path)});
    (void)tool.wait(start_limit_ms);
    const auto facts = wait_for_picture(path);
    ASSERT_TRUE(facts) << "no picture was taken";
    EXPECT_EQ(facts->width, static_cast<unsigned>(area.right - area.left));
    EXPECT_EQ(facts->height, static_cast<unsigned>(area.bottom - area.top));
    EXPECT_GT(facts->colours, least_colours);
    EXPECT_GT(facts->lit_pixels, std::size_t{facts->width} * facts->height / 10) << "the picture is black";
}

}  // namespace ov::test
