// Loading the module, taking a class object and unloading it again, beside an empty file of the same size
// with the same imports. Copies in a folder of their own, where no resource library is to be checked.

#include <windows.h>
#include <unknwn.h>

#include <string>

#include "bench/harness/catch2.h"
#include "bench/harness/compare.h"
#include "bench/paths/class_object.h"
#include "ovufc/cert/signer_check.h"
#include "ovufc/win/handle.h"
#include "testkit/process/shipped_module.h"
#include "testkit/files/temp_folder.h"

namespace {

using ov::bench::compare;
using ov::bench::require;

void load_and_unload(const std::wstring& path) {
    const ov::win::unique_library module(LoadLibraryW(path.c_str()));
    require(static_cast<bool>(module), "LoadLibraryW");
    ov::bench::take_class_object(module.get());
}

TEST_CASE("load", "[alone]") {
    const ov::test::temp_folder folder;
    const std::wstring ours = folder.path() + L"\\orvshellext.dll";
    const std::wstring empty = folder.path() + L"\\empty_module.dll";
    const std::wstring built = ov::test::program_directory();
    require(CopyFileW((built + L"orvshellext.dll").c_str(), ours.c_str(), FALSE) != FALSE, "CopyFileW");
    require(CopyFileW((built + L"empty_module.dll").c_str(), empty.c_str(), FALSE) != FALSE, "CopyFileW");
    // What both import stays loaded, as it is in Explorer.
    const ov::win::unique_library imports(LoadLibraryW((built + L"empty_module.dll").c_str()));
    const auto load = [](const std::wstring& path) {
        (void)ov::win::unique_library(LoadLibraryW(path.c_str()));
    };
    compare(
        "load, unload", {.aim = 1.15, .rounds = 12},
        {{"ours", [&] { load(ours); }, {}}, {"empty file, same size and imports", [&] { load(empty); }, {}}});
    compare("load, class object, unload", {.aim = 1.15, .rounds = 12},
            {{"ours", [&] { load_and_unload(ours); }, {}},
             // A class object asks the system to check a resource library, here one that is not there.
             {"the empty file and that check",
              [&] {
                  load_and_unload(empty);
                  (void)ov::cert::is_signed_by_maker(folder.path() + L"\\orvres.dll");
              },
              {}},
             {"the empty file alone", [&] { load_and_unload(empty); }, {}},
             {"ours, with a resource library", [&] { load_and_unload(built + L"orvshellext.dll"); }, {}}});
}

}  // namespace
