// Sections that are not what the driver says: parts of them are not there, or cannot be touched as they
// should.

#include <gtest/gtest.h>

#include <array>

#include "ovufc/ipc/drvport/client_port.h"
#include "tests/unit/ovufc/drvport/fake_driver.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::fake_driver;

constexpr std::uint32_t other_process = 0x4711;

// Pages that end a program which touches them.
constexpr DWORD decommitted = 0;
constexpr std::array<DWORD, 4> unreadable{decommitted, PAGE_NOACCESS, PAGE_READWRITE | PAGE_GUARD,
                                          PAGE_READONLY | PAGE_GUARD};
constexpr std::array<DWORD, 6> unwritable{decommitted,   PAGE_NOACCESS,     PAGE_READWRITE | PAGE_GUARD,
                                          PAGE_READONLY, PAGE_EXECUTE_READ, PAGE_READONLY | PAGE_GUARD};

template <class Page>
void make(volatile Page& page, DWORD protection) {
    void* const start = const_cast<Page*>(&page);
    if (protection == decommitted) {
        ASSERT_TRUE(VirtualFree(start, sizeof page, MEM_DECOMMIT));
        return;
    }
    DWORD old = 0;
    ASSERT_TRUE(VirtualProtect(start, sizeof page, protection, &old));
}

std::uint64_t address_of(const volatile void* place) {
    return reinterpret_cast<std::uintptr_t>(place);
}

TEST(HostileSection, address_where_nothing_is_is_a_failed_open) {
    fake_driver driver;
    void* const reserved = VirtualAlloc(nullptr, 8192, MEM_RESERVE, PAGE_READWRITE);
    for (const std::uint64_t word : {address_of(reserved), std::uint64_t{1}, std::uint64_t{4096},
                                     ~std::uint64_t{0}, ~std::uint64_t{4095}, std::uint64_t{1} << 63}) {
        driver.closed.clear();
        driver.section_word = word;
        client_port port;
        EXPECT_FALSE(port.connect()) << std::hex << word;
        EXPECT_EQ(driver.closed, (std::vector<HANDLE>{fake_driver::semaphore, fake_driver::device}));
        driver.section_word.reset();
        EXPECT_TRUE(port.connect()) << "the next call tries again";
    }
    VirtualFree(reserved, 0, MEM_RELEASE);
}

TEST(HostileSection, status_block_that_cannot_be_read_is_a_failed_open) {
    for (const DWORD protection : unreadable) {
        fake_driver driver;
        make(driver.status(), protection);
        client_port port;
        EXPECT_FALSE(port.connect()) << std::hex << protection;
        EXPECT_EQ(driver.closed, (std::vector<HANDLE>{fake_driver::semaphore, fake_driver::device}));
    }
}

TEST(HostileSection, status_block_that_is_cut_off_is_a_failed_open) {
    fake_driver driver(0);
    driver.section_word = address_of(&driver.status()) + 128;
    client_port port;
    EXPECT_FALSE(port.connect());
}

TEST(HostileSection, status_block_that_can_only_be_read_is_enough) {
    fake_driver driver;
    make(driver.status(), PAGE_READONLY);
    client_port port;
    EXPECT_TRUE(port.connect());
    EXPECT_EQ(port.acquire_slot({}), &driver.slot(0));
}

TEST(HostileSection, no_slot_at_all_is_no_free_slot) {
    fake_driver driver(0);
    for (const std::uint32_t size_word : {0U, 4096U, 8192U, 0xFFFFFFFFU}) {
        driver.status().section_bytes = size_word;
        client_port port;
        EXPECT_EQ(port.acquire_slot({}), nullptr) << size_word;
    }
    EXPECT_TRUE(driver.signalled.empty());
}

TEST(HostileSection, first_slot_that_cannot_be_written_is_never_free) {
    for (const DWORD protection : unwritable) {
        fake_driver driver;
        make(driver.slot(0), protection);
        client_port port;
        EXPECT_EQ(port.acquire_slot({}), &driver.slot(1)) << std::hex << protection;
    }
}

TEST(HostileSection, first_slot_of_a_small_section_that_cannot_be_written_is_never_free) {
    for (const DWORD protection : unwritable) {
        fake_driver driver;
        driver.status().section_bytes = 8192;
        make(driver.slot(0), protection);
        client_port port;
        EXPECT_EQ(port.acquire_slot({}), nullptr) << std::hex << protection;
    }
}

TEST(HostileSection, slot_between_that_cannot_be_written_is_passed_over) {
    for (const DWORD protection : unwritable) {
        fake_driver driver(4);
        driver.slot(0).owner = other_process;
        driver.slot(2).owner = other_process;
        make(driver.slot(1), protection);
        client_port port;
        EXPECT_EQ(port.acquire_slot({}), &driver.slot(3)) << std::hex << protection;
    }
}

TEST(HostileSection, slot_grown_after_opening_that_cannot_be_written_is_never_free) {
    fake_driver driver(1);
    driver.slot(0).owner = other_process;
    client_port port;
    ASSERT_TRUE(port.connect());
    VirtualAlloc(const_cast<orv_slot*>(&driver.slot(1)), ORV_SLOT_BYTES, MEM_COMMIT, PAGE_READONLY);
    driver.status().section_bytes = 12288;
    EXPECT_EQ(port.acquire_slot({}), nullptr);
}

TEST(HostileSection, exchange_without_a_writable_slot_fails_at_once) {
    fake_driver driver(1);
    make(driver.slot(0), PAGE_READONLY);
    client_port port;
    std::array<char, ORV_REPLY_LIMIT_BYTES> reply{};
    std::uint32_t reply_bytes = 0;
    EXPECT_FALSE(port.transact({}, reply.data(), reply_bytes));
    EXPECT_TRUE(driver.naps.empty());
}

}  // namespace
