// The memory that a host spends on the module: what is private to the process after loading it and taking the
// first class object, over what was before. Each candidate in a process of its own, since it is spent once.

#include <windows.h>
#include <psapi.h>
#include <unknwn.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/harness/catch2.h"
#include "bench/harness/compare.h"
#include "bench/paths/class_object.h"
#include "ovufc/win/handle.h"
#include "testkit/files/temp_folder.h"
#include "testkit/process/shipped_module.h"

namespace {

using ov::bench::require;

constexpr std::size_t page_bytes = 4096;

std::size_t private_pages(void* begin, std::size_t pages) {
    std::vector<PSAPI_WORKING_SET_EX_INFORMATION> asked(pages);
    for (std::size_t page = 0; page < pages; ++page) {
        asked[page].VirtualAddress = static_cast<std::byte*>(begin) + page * page_bytes;
    }
    require(QueryWorkingSetEx(GetCurrentProcess(), asked.data(),
                              static_cast<DWORD>(asked.size() * sizeof asked.front())) != FALSE,
            "QueryWorkingSetEx");
    return static_cast<std::size_t>(std::count_if(asked.begin(), asked.end(), [](const auto& page) {
        return page.VirtualAttributes.Valid && !page.VirtualAttributes.Shared;
    }));
}

// Pages in memory that no other process has.
std::size_t private_bytes() {
    std::size_t pages = 0;
    std::uintptr_t next = 0;
    MEMORY_BASIC_INFORMATION region{};
    while (VirtualQuery(reinterpret_cast<const void*>(next), &region, sizeof region) != 0) {
        if (region.State == MEM_COMMIT) {
            pages += private_pages(region.BaseAddress, region.RegionSize / page_bytes);
        }
        next = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
    }
    return pages * page_bytes;
}

// `file` of the program's folder, copied where nothing is beside it but `companion`.
void measure(const char* name, const wchar_t* file, const wchar_t* companion) {
    const std::wstring built = ov::test::program_directory();
    const ov::test::temp_folder folder;
    for (const wchar_t* copied : {file, companion}) {
        require(copied == nullptr ||
                    CopyFileW((built + copied).c_str(), (folder.path() + L'\\' + copied).c_str(), FALSE),
                "CopyFileW");
    }
    // What a host has anyway: the libraries that are imported, and a display.
    const ov::win::unique_library imports(LoadLibraryW((built + L"empty_module.dll").c_str()));
    ReleaseDC(nullptr, GetDC(nullptr));
    (void)private_bytes();  // what counting takes is taken now

    const std::size_t before = private_bytes();
    const ov::win::unique_library module(LoadLibraryW((folder.path() + L'\\' + file).c_str()));
    require(static_cast<bool>(module), "LoadLibraryW");
    ov::bench::take_class_object(module.get());
    constexpr int aim = 1 << 20;
    std::printf("memory\tload, first class object\t%d\t%s\t%lld\n", aim, name,
                static_cast<long long>(private_bytes()) - static_cast<long long>(before));
}

TEST_CASE("memory of ours", "[.memory]") {
    measure("ours", L"orvshellext.dll", L"orvres.dll");
}

TEST_CASE("memory of ours alone", "[.memory]") {
    measure("ours, without the resource library", L"orvshellext.dll", nullptr);
}

TEST_CASE("memory of the empty file", "[.memory]") {
    measure("empty file, same size and imports", L"empty_module.dll", nullptr);
}

}  // namespace
