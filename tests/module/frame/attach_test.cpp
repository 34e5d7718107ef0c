#include <gtest/gtest.h>

#include "testkit/process/shipped_module.h"

namespace ov::test {
namespace {

TEST(Attach, threads_of_the_host_are_not_announced_to_the_module) {
    const shipped_module module;
    // Refused by the system for a file with a TLS directory; the module's own call went the same way as this
    // one.
    EXPECT_TRUE(DisableThreadLibraryCalls(module.handle()));
}

}  // namespace
}  // namespace ov::test
