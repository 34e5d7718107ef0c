#include "testkit/process/before_attach.h"

#include <gtest/gtest.h>

#include <vector>

#include "ovufc/win/handle.h"

namespace ov::test {
namespace {

constexpr const wchar_t* sample = L"testkit_sample.dll";

TEST(BeforeAttach, load_of_the_library_runs_the_function_on_it_once) {
    std::vector<HMODULE> seen;
    const before_attach watching(L"TestKit_Sample.DLL", [&](HMODULE module) { seen.push_back(module); });
    const win::unique_library library(LoadLibraryW(sample));
    const win::unique_library again(LoadLibraryW(sample));
    EXPECT_EQ(seen, std::vector{library.get()});
}

TEST(BeforeAttach, other_libraries_and_later_loads_are_left_alone) {
    bool seen = false;
    {
        const before_attach watching(L"another.dll", [&](HMODULE) { seen = true; });
        const win::unique_library library(LoadLibraryW(sample));
    }
    {
        const before_attach over(sample, [&](HMODULE) { seen = true; });
    }
    const win::unique_library library(LoadLibraryW(sample));
    EXPECT_FALSE(seen);
}

}  // namespace
}  // namespace ov::test
