// The lock of the protected-locations cache: exclusive for a whole refresh, shared for a copy.

#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "module/state/module_state.h"
#include "namespace/locations/protected_locations.h"
#include "testkit/checks/lock_trace.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/module_attach.h"
#include "testkit/service/scripted_service.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;
using ov::module_state::cacheLock;
using mode = lock_trace::mode;
using holds = std::vector<lock_trace::hold>;

HMODULE self() {
    return GetModuleHandleW(nullptr);
}

TEST(CacheLock, refresh_holds_it_exclusively_while_the_driver_is_asked) {
    std::atomic<int> asked = 0;
    std::atomic<int> was_free = 0;
    scripted_service service([&](const auto&) {
        ++asked;
        // On the service's own thread, while the refresh waits for this answer.
        if (TryAcquireSRWLockShared(&cacheLock)) {
            ReleaseSRWLockShared(&cacheLock);
            ++was_free;
        }
        return R"({"statusCode":1,"data":{}})";
    });
    service.set_generation(4711);  // none that the cache may know
    const lock_trace locks(self());
    refresh_protected_locations();
    EXPECT_EQ(1, asked);
    EXPECT_EQ(0, was_free) << "a folder made meanwhile would not wait for this fetch";
    EXPECT_EQ((holds{{&cacheLock, mode::exclusive}}), locks.taken());
    EXPECT_TRUE(locks.held().empty());
}

TEST(CacheLock, refresh_without_anything_to_fetch_takes_it_exclusively_too) {
    const scripted_service service([](const auto&) { return ""; });  // generation 0
    const lock_trace locks(self());
    refresh_protected_locations();
    EXPECT_EQ((holds{{&cacheLock, mode::exclusive}}), locks.taken());
    EXPECT_TRUE(locks.held().empty());
}

TEST(CacheLock, copy_takes_it_shared) {
    const lock_trace locks(self());
    (void)protected_locations();
    EXPECT_EQ((holds{{&cacheLock, mode::shared}}), locks.taken());
    EXPECT_TRUE(locks.held().empty());
}

}  // namespace
