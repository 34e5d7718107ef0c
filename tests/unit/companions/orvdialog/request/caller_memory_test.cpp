#include "companions/orvdialog/request/caller_memory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>

#include "testkit/memory/guarded_buffer.h"

namespace ov::dialog {
namespace {

constexpr std::size_t page_bytes = 4096;

TEST(CallerMemory, bytes_before_a_guard_page_are_counted) {
    const test::guarded_buffer memory(100);
    EXPECT_EQ(readable_bytes(memory.as<char>(), 100), 100U);
    EXPECT_EQ(readable_bytes(memory.as<char>(), 5000), 100U);
    EXPECT_EQ(readable_bytes(memory.as<char>() + 100, 1), 0U);
}

TEST(CallerMemory, pointers_into_nowhere_have_no_bytes) {
    EXPECT_EQ(readable_bytes(nullptr, 1), 0U);
    EXPECT_EQ(readable_bytes(reinterpret_cast<const void*>(std::uintptr_t{8}), 1), 0U);
    EXPECT_EQ(readable_bytes(reinterpret_cast<const void*>(~std::uintptr_t{0}), 1), 0U);
    EXPECT_EQ(readable_bytes(reinterpret_cast<const void*>(std::uintptr_t{0xCCCCCCCCCCCCCCCC}), 1), 0U);
}

TEST(CallerMemory, pages_of_different_protection_are_counted_together) {
    const test::guarded_buffer memory(3 * page_bytes);
    DWORD old = 0;
    VirtualProtect(memory.as<char>() + page_bytes, page_bytes, PAGE_READONLY, &old);
    EXPECT_EQ(readable_bytes(memory.as<char>() + 10, 3 * page_bytes - 10), 3 * page_bytes - 10);
    EXPECT_FALSE(is_writable(memory.as<char>(), 2 * page_bytes));
    EXPECT_TRUE(is_writable(memory.as<char>(), page_bytes));
}

TEST(CallerMemory, read_only_memory_is_not_writable) {
    const test::guarded_buffer memory(100, PAGE_READONLY);
    EXPECT_EQ(readable_bytes(memory.as<char>(), 100), 100U);
    EXPECT_FALSE(is_writable(memory.as<char>(), 100));
    EXPECT_FALSE(is_writable(nullptr, 1));
}

TEST(CallerMemory, wide_text_that_ends_at_the_last_byte_is_read) {
    const test::guarded_buffer memory(4 * sizeof(wchar_t));
    std::wmemcpy(memory.as<wchar_t>(), L"abc", 4);
    EXPECT_EQ(read_wide_text(memory.as<wchar_t>(), 100), L"abc");
}

TEST(CallerMemory, wide_text_without_end_is_refused) {
    const test::guarded_buffer memory(4 * sizeof(wchar_t));
    std::wmemcpy(memory.as<wchar_t>(), L"abcd", 4);
    EXPECT_FALSE(read_wide_text(memory.as<wchar_t>(), 100).has_value());
    EXPECT_FALSE(read_wide_text(nullptr, 100).has_value());
}

TEST(CallerMemory, wide_text_over_the_limit_is_refused) {
    EXPECT_EQ(read_wide_text(L"abc", 3), L"abc");
    EXPECT_FALSE(read_wide_text(L"abcd", 3).has_value());
}

TEST(CallerMemory, misaligned_wide_text_is_read) {
    const test::guarded_buffer memory(3 * sizeof(wchar_t) + 1);
    std::memcpy(memory.as<char>(), L"ab", 3 * sizeof(wchar_t));
    EXPECT_EQ(read_wide_text(memory.as<wchar_t>(), 100), L"ab");
}

TEST(CallerMemory, narrow_text_is_read_up_to_its_end) {
    const test::guarded_buffer memory(4);
    std::memcpy(memory.as<char>(), "abc", 4);
    EXPECT_EQ(read_narrow_text(memory.as<char>(), 100), "abc");
    memory.as<char>()[3] = 'd';
    EXPECT_FALSE(read_narrow_text(memory.as<char>(), 100).has_value());
    EXPECT_FALSE(read_narrow_text("abcd", 3).has_value());
    EXPECT_FALSE(read_narrow_text(nullptr, 3).has_value());
}

}  // namespace
}  // namespace ov::dialog
