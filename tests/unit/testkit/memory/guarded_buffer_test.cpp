#include "testkit/memory/guarded_buffer.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using ov::test::guarded_buffer;

constexpr std::array content{std::byte{1}, std::byte{2}, std::byte{3}};

TEST(GuardedBuffer, read_to_its_last_byte_counts_nothing) {
    const guarded_buffer buffer(content);
    const volatile std::byte* bytes = buffer.data();
    EXPECT_EQ(1, static_cast<int>(bytes[0]));
    EXPECT_EQ(3, static_cast<int>(bytes[2]));
    EXPECT_EQ(0, buffer.overruns());
}

TEST(GuardedBuffer, read_past_its_end_is_counted_and_survived) {
    const guarded_buffer buffer(content);
    const volatile std::byte* bytes = buffer.data();
    (void)bytes[3];
    EXPECT_EQ(1, buffer.overruns());
}

TEST(GuardedBuffer, write_past_its_end_is_counted_and_survived) {
    const guarded_buffer buffer(content);
    volatile std::byte* bytes = buffer.data();
    bytes[3] = std::byte{4};
    EXPECT_EQ(1, buffer.overruns());
}

TEST(GuardedBuffer, bytes_by_size_are_zeros_that_end_at_the_guard) {
    const guarded_buffer buffer(5000);
    EXPECT_EQ(buffer.as<char>()[0], 0);
    EXPECT_EQ(buffer.as<char>()[4999], 0);
    EXPECT_EQ(buffer.overruns(), 0);
    static_cast<void>(*const_cast<volatile char*>(buffer.as<char>() + 5000));
    EXPECT_EQ(buffer.overruns(), 1);
}

TEST(GuardedBuffer, protection_holds_for_the_bytes) {
    const guarded_buffer buffer(100, PAGE_READONLY);
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(buffer.data(), &region, sizeof region);
    EXPECT_EQ(region.Protect, static_cast<DWORD>(PAGE_READONLY));
    buffer.protect(PAGE_READWRITE);
    VirtualQuery(buffer.data(), &region, sizeof region);
    EXPECT_EQ(region.Protect, static_cast<DWORD>(PAGE_READWRITE));
}

}  // namespace
