#include "testkit/imports/failing_calls.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace ov::test {
namespace {

const HMODULE self = GetModuleHandleW(nullptr);

// Not inlined, so that the import is read for each call.
[[gnu::noinline]] DWORD attributes_here() {
    return GetFileAttributesW(L".");
}

[[gnu::noinline]] DWORD temp_path_chars() {
    wchar_t path[MAX_PATH + 1];
    return GetTempPathW(MAX_PATH + 1, path);
}

TEST(FailingCall, call_that_is_due_fails_and_the_others_reach_the_system) {
    const failing_call call(self, "GetFileAttributesW", 2);
    EXPECT_NE(attributes_here(), INVALID_FILE_ATTRIBUTES);
    EXPECT_FALSE(call.met());
    EXPECT_EQ(attributes_here(), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_SUPPORTED));
    EXPECT_TRUE(call.met());
    EXPECT_NE(attributes_here(), INVALID_FILE_ATTRIBUTES);
}

TEST(FailingCall, function_that_is_not_known_is_refused) {
    EXPECT_THROW(failing_call(self, "CloseHandle", 1), std::runtime_error);
}

TEST(FailingCalls, each_call_of_each_function_fails_once) {
    std::vector<std::string> met;
    const int failures = fail_each_call(self, 9, [&](const failing_call& call, const std::string& what) {
        const bool well = attributes_here() != INVALID_FILE_ATTRIBUTES && temp_path_chars() != 0 &&
                          attributes_here() != INVALID_FILE_ATTRIBUTES;
        EXPECT_EQ(well, !call.met()) << what;
        if (call.met()) {
            met.push_back(what);
        }
    });
    EXPECT_EQ(met, (std::vector<std::string>{"GetFileAttributesW, call 1", "GetFileAttributesW, call 2",
                                             "GetTempPathW, call 1"}));
    EXPECT_EQ(failures, 3);
}

}  // namespace
}  // namespace ov::test
