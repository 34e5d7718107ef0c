#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "ovufc/exception.h"
#include "ovufc/win/reg_key.h"
#include "testkit/registry/registry_watch.h"

namespace ov::win {
namespace {

using test::registry_watch;
using testing::ElementsAre;
using testing::IsEmpty;

class RegKeyCalls : public testing::Test {
  protected:
    void fail_call(std::size_t failing, LSTATUS status) {
        watch.answer = [=](std::size_t number, const std::string&) -> std::optional<LSTATUS> {
            return number == failing ? std::optional(status) : std::nullopt;
        };
    }

    registry_watch watch{GetModuleHandleW(nullptr), registry_watch::mode::simulate};
};

TEST_F(RegKeyCalls, create_asks_for_all_access_in_each_view) {
    for (const std::uint32_t view : {0U, 1U, 2U, 3U, 0xFFFFFFFFU}) {
        reg_key().create(HKEY_CURRENT_USER, L"k", view, L"");
    }
    EXPECT_THAT(watch.calls(), ElementsAre(R"(create HKCU "k" options 0 access F003F -> #1)", "close #1",
                                           R"(create HKCU "k" options 0 access F023F -> #2)", "close #2",
                                           R"(create HKCU "k" options 0 access F013F -> #3)", "close #3",
                                           R"(create HKCU "k" options 0 access F003F -> #4)", "close #4",
                                           R"(create HKCU "k" options 0 access F003F -> #5)", "close #5"));
}

TEST_F(RegKeyCalls, open_asks_for_its_access_in_each_view) {
    for (const std::uint32_t view : {0U, 1U, 2U, 3U}) {
        reg_key().open(HKEY_CURRENT_USER, L"k", view, true);
        reg_key().open(HKEY_CURRENT_USER, L"k", view, false);
    }
    std::vector<std::string> opened;
    for (const std::string& line : watch.calls()) {
        if (line.rfind("open", 0) == 0) {
            opened.push_back(line.substr(0, line.find(" ->")));
        }
    }
    EXPECT_THAT(
        opened,
        ElementsAre(R"(open HKCU "k" options 0 access 20019)", R"(open HKCU "k" options 0 access 2001F)",
                    R"(open HKCU "k" options 0 access 20219)", R"(open HKCU "k" options 0 access 2021F)",
                    R"(open HKCU "k" options 0 access 20119)", R"(open HKCU "k" options 0 access 2011F)",
                    R"(open HKCU "k" options 0 access 20019)", R"(open HKCU "k" options 0 access 2001F)"));
}

TEST_F(RegKeyCalls, create_sets_its_default_with_the_terminating_zero) {
    reg_key().create(HKEY_CURRENT_USER, L"k", 1, L"Orvane");
    EXPECT_THAT(watch.calls(), ElementsAre(R"(create HKCU "k" options 0 access F023F -> #1)",
                                           R"(set #1 (default) REG_SZ 14 "Orvane\0")", "close #1"));
}

TEST_F(RegKeyCalls, create_tries_once_more_when_access_is_denied) {
    fail_call(0, ERROR_ACCESS_DENIED);
    reg_key().create(HKEY_CURRENT_USER, L"k", 2, L"");
    EXPECT_THAT(watch.calls(), ElementsAre(R"(create HKCU "k" options 0 access F013F = 5)",
                                           R"(create HKCU "k" options 4 access F013F -> #1)", "close #1"));
}

TEST_F(RegKeyCalls, create_denied_twice_throws_the_second_status) {
    watch.answer = [](std::size_t number, const std::string&) -> std::optional<LSTATUS> {
        return number == 0 ? ERROR_ACCESS_DENIED : ERROR_DISK_FULL;
    };
    reg_key key;
    try {
        key.create(HKEY_CURRENT_USER, L"k", 0, L"text");
        FAIL() << "did not throw";
    } catch (const exception& error) {
        EXPECT_THAT(error.what(), testing::EndsWith(" (win_registry::create, RegCreateKeyExW)"));
        EXPECT_EQ(error.code, registry_watch::injected_last_error);
    }
    EXPECT_EQ(key.key, nullptr);
    EXPECT_EQ(watch.calls().size(), 2U);
}

TEST_F(RegKeyCalls, create_does_not_repeat_any_other_failure) {
    for (const LSTATUS status : {2, 6, 87, 112, 1314}) {
        watch.clear();
        fail_call(0, status);
        EXPECT_THROW(reg_key().create(HKEY_CURRENT_USER, L"k", 0, L""), exception);
        EXPECT_EQ(watch.calls().size(), 1U);
    }
}

TEST_F(RegKeyCalls, create_whose_default_fails_throws_and_closes_with_its_owner) {
    fail_call(1, ERROR_ACCESS_DENIED);
    EXPECT_THROW(reg_key().create(HKEY_CURRENT_USER, L"k", 0, L"text"), exception);
    EXPECT_EQ(watch.open_keys(), 0U);
}

TEST_F(RegKeyCalls, failed_open_holds_nothing_and_has_the_last_error_for_its_code) {
    reg_key key;
    fail_call(0, ERROR_ACCESS_DENIED);
    try {
        key.open(HKEY_CURRENT_USER, L"k", 0, true);
        FAIL() << "did not throw";
    } catch (const exception& error) {
        // Not 5: registry functions return their status, and the code is the thread's last error.
        EXPECT_EQ(error.code, registry_watch::injected_last_error);
    }
    EXPECT_EQ(key.key, nullptr);
    key.close();
    EXPECT_EQ(watch.calls().size(), 1U);
}

TEST_F(RegKeyCalls, opening_over_a_held_key_forgets_it) {
    {
        reg_key key;
        key.open(HKEY_CURRENT_USER, L"first", 0, true);
        key.open(HKEY_CURRENT_USER, L"second", 0, true);
        key.create(HKEY_CURRENT_USER, L"third", 0, L"");
    }
    EXPECT_EQ(watch.calls().back(), "close #3");
    EXPECT_EQ(watch.open_keys(), 2U);
}

TEST_F(RegKeyCalls, close_closes_once) {
    reg_key key;
    key.close();
    key.open(HKEY_CURRENT_USER, L"k", 0, true);
    key.close();
    key.close();
    EXPECT_EQ(watch.calls().size(), 2U);
}

TEST_F(RegKeyCalls, values_pass_name_type_and_size) {
    reg_key key;
    key.open(HKEY_CURRENT_USER, L"k", 0, false);
    const char bytes[] = {1, 2, 3};
    key.internal_set_value(L"raw", REG_BINARY, bytes, 3);
    key.internal_set_value(L"", REG_EXPAND_SZ, L"%a%", 8);
    key.set_dword(L"n", 0x42);
    EXPECT_EQ(watch.calls()[1], R"(set #1 "raw" type 3 3 )");
    EXPECT_EQ(watch.calls()[2], R"(set #1 (default) REG_EXPAND_SZ 8 "%a%\0")");
    EXPECT_EQ(watch.calls()[3], R"(set #1 "n" REG_DWORD 4 42)");
}

TEST_F(RegKeyCalls, root_key_fills_in_its_root) {
    {
        classes_root_key classes;
        classes.create(L"c", 1, L"d");
        classes.close();
        classes.open(L"c", 1, false);
    }
    local_machine_key machine;
    EXPECT_EQ(machine.remove(L"m"), 0);
    EXPECT_TRUE(machine.remove_tree(L"t"));
    EXPECT_THAT(watch.calls(), ElementsAre(R"(create HKCR "c" options 0 access F023F -> #1)",
                                           R"(set #1 (default) REG_SZ 4 "d\0")", "close #1",
                                           R"(open HKCR "c" options 0 access 2021F -> #2)", "close #2",
                                           R"(delete-key HKLM "m")", R"(delete-tree HKLM "t")"));
}

TEST_F(RegKeyCalls, root_key_through_its_base_creates_where_told_and_opens_nothing) {
    local_machine_key machine;
    reg_key& base = machine;
    base.create(HKEY_CURRENT_USER, L"k", 0, L"");
    base.close();
    watch.clear();
    base.open(HKEY_CURRENT_USER, L"k", 0, true);
    EXPECT_THAT(watch.calls(), IsEmpty());
}

TEST_F(RegKeyCalls, remove_and_remove_tree_tell_failures_each_in_its_way) {
    watch.answer = [](std::size_t, const std::string&) { return ERROR_ACCESS_DENIED; };
    local_machine_key machine;
    EXPECT_THROW(machine.remove(L"m"), exception);
    EXPECT_FALSE(machine.remove_tree(L"t"));
}

/// The slot of a virtual member function, counted from the first after the destructor's two.
template <class Member>
std::intptr_t slot_of(Member member) {
    std::intptr_t encoded = 0;
    std::memcpy(&encoded, &member, sizeof encoded);
    // This compiler writes a virtual member as the byte offset in the table, plus one.
    return (encoded - 1) / static_cast<std::intptr_t>(sizeof(void*)) - 2;
}

TEST(RegKeySlots, virtual_operations_stand_in_their_order) {
    using key = reg_root_key<0x80000000>;
    using text = const std::wstring&;
    EXPECT_EQ(slot_of(static_cast<void (reg_key::*)(HKEY, text, std::uint32_t, text)>(&reg_key::create)), 0);
    EXPECT_EQ(slot_of(static_cast<void (reg_key::*)(HKEY, text, std::uint32_t, bool)>(&reg_key::open)), 1);
    EXPECT_EQ(slot_of(static_cast<void (key::*)(HKEY, text, std::uint32_t, bool)>(&key::open)), 1);
    EXPECT_EQ(slot_of(&key::unused_3), 2);
    EXPECT_EQ(slot_of(static_cast<void (key::*)(text, std::uint32_t, text)>(&key::create)), 3);
    EXPECT_EQ(slot_of(static_cast<void (key::*)(text, std::uint32_t, bool)>(&key::open)), 4);
    EXPECT_EQ(slot_of(&key::unused_6), 5);
    EXPECT_EQ(slot_of(&key::remove), 6);
    EXPECT_EQ(slot_of(&key::remove_tree), 7);
}

}  // namespace
}  // namespace ov::win
