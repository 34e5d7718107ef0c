// The lock inside: exclusive for a whole load, the signer check included, shared for each fetch.

#include <windows.h>
#include <softpub.h>
#include <wintrust.h>

#include <gtest/gtest.h>

#include "ovufc/i18n/rosetta_stone.h"
#include "testkit/checks/lock_trace.h"
#include "testkit/imports/format_message.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/ovufc/cert/samples.h"

namespace ov::i18n {
namespace {

using test::format_message;
using test::import_patch;
using test::lock_trace;
using test::sample;
using mode = lock_trace::mode;
using holds = std::vector<lock_trace::hold>;

// What was held at each call of the system that the stone makes.
const lock_trace* watched = nullptr;
std::vector<holds> seen;

LONG WINAPI look_and_accept(HWND, GUID*, LPVOID) {
    seen.push_back(watched->held());
    return ERROR_SUCCESS;
}

HMODULE WINAPI look_and_load_nothing(LPCWSTR, HANDLE, DWORD) {
    seen.push_back(watched->held());
    return nullptr;
}

LANGID WINAPI look_and_tell_english() {
    seen.push_back(watched->held());
    return 0x0409;
}

DWORD WINAPI look_and_give_no_text(DWORD, LPCVOID, DWORD, DWORD, LPWSTR, DWORD, char**) {
    seen.push_back(watched->held());
    return 0;
}

class RosettaStoneLock : public testing::Test {
  protected:
    RosettaStoneLock() {
        seen.clear();
        watched = &locks;
    }

    /// Expects that all was seen under the one lock that was taken, in the mode that is expected.
    void expect_all_seen_under(mode how, std::size_t least) const {
        ASSERT_FALSE(locks.taken().empty());
        EXPECT_EQ(locks.taken().back().how, how);
        EXPECT_GE(seen.size(), least);
        for (const holds& held : seen) {
            EXPECT_EQ(held, holds{locks.taken().back()});
        }
        EXPECT_TRUE(locks.held().empty());
    }

    HMODULE program = GetModuleHandleW(nullptr);
    rosetta_stone stone;
    lock_trace locks{program};
};

TEST_F(RosettaStoneLock, load_holds_it_exclusively_from_the_check_to_the_choice_of_language) {
    const import_patch<decltype(WinVerifyTrust)> check(program, "wintrust.dll", "WinVerifyTrust",
                                                       look_and_accept);
    const import_patch<decltype(LoadLibraryExW)> loading(program, "kernel32.dll", "LoadLibraryExW",
                                                         look_and_load_nothing);
    const import_patch<decltype(GetUserDefaultLangID)> locale(program, "kernel32.dll", "GetUserDefaultLangID",
                                                              look_and_tell_english);
    const import_patch<decltype(GetUserDefaultUILanguage)> user_interface(
        program, "kernel32.dll", "GetUserDefaultUILanguage", look_and_tell_english);
    EXPECT_FALSE(stone.load(sample(L"maker")));
    EXPECT_EQ(locks.taken().size(), 1U);
    expect_all_seen_under(mode::exclusive, 4);  // verify, close, load, language
}

TEST_F(RosettaStoneLock, refused_load_gives_it_back) {
    EXPECT_FALSE(stone.load(sample(L"unsigned")));
    EXPECT_TRUE(locks.held().empty());
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_FALSE(stone.load(sample(L"maker")));
    EXPECT_EQ(locks.taken().size(), 3U);
    EXPECT_TRUE(locks.held().empty());
}

TEST_F(RosettaStoneLock, fetch_holds_it_shared) {
    ASSERT_TRUE(stone.load(sample(L"maker")));
    const import_patch<format_message> formatting(program, "kernel32.dll", "FormatMessageW",
                                                  look_and_give_no_text);
    (void)stone.lookup(0);
    EXPECT_EQ(locks.taken().size(), 2U);
    EXPECT_EQ(locks.taken()[1].lock, locks.taken()[0].lock);
    expect_all_seen_under(mode::shared, 1);
    (void)stone.format(0);
    EXPECT_EQ(locks.taken().size(), 3U);
    expect_all_seen_under(mode::shared, 2);
}

TEST_F(RosettaStoneLock, fetch_before_the_load_looks_under_it_too) {
    (void)stone.lookup(0);
    EXPECT_EQ(locks.taken().size(), 1U);
    expect_all_seen_under(mode::shared, 0);
}

}  // namespace
}  // namespace ov::i18n
