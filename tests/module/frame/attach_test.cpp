#include <gtest/gtest.h>

#include <optional>

#include "testkit/imports/import_patch.h"
#include "testkit/process/before_attach.h"
#include "testkit/process/shipped_module.h"

namespace ov::test {
namespace {

HMODULE told_to_be_quiet = nullptr;

BOOL WINAPI record_and_grant(HMODULE module) {
    told_to_be_quiet = module;
    return TRUE;
}

TEST(Attach, module_asks_not_to_be_told_of_threads) {
    std::optional<import_patch<decltype(DisableThreadLibraryCalls)>> recording;
    const before_attach patch(L"orvshellext.dll", [&](HMODULE module) {
        recording.emplace(module, "kernel32.dll", "DisableThreadLibraryCalls", record_and_grant);
    });
    const shipped_module module;
    recording.reset();  // its table goes with the module
    EXPECT_EQ(module.handle(), told_to_be_quiet);
}

TEST(Attach, threads_of_the_host_are_not_announced_to_the_module) {
    const shipped_module module;
    // Refused by the system for a file with a TLS directory; the module's own call went the same way as this
    // one.
    EXPECT_TRUE(DisableThreadLibraryCalls(module.handle()));
}

}  // namespace
}  // namespace ov::test
