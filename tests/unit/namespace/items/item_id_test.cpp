#include "namespace/items/item_id.h"

#include <shlobj.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>
#include <vector>

#include "namespace/items/item_types.h"
#include "testkit/memory/guarded_buffer.h"

namespace {

using namespace ov::name_space;
using ov::test::guarded_buffer;

std::uint16_t word_at(const void* memory, std::size_t offset) {
    std::uint16_t value;
    std::memcpy(&value, static_cast<const std::byte*>(memory) + offset, sizeof(value));
    return value;
}

void put_word(void* memory, std::size_t offset, std::uint16_t value) {
    std::memcpy(static_cast<std::byte*>(memory) + offset, &value, sizeof(value));
}

PCUIDLIST_RELATIVE as_list(const void* memory) {
    return static_cast<PCUIDLIST_RELATIVE>(memory);
}

// The bytes of a well-formed entry, without the end of the list.
std::vector<std::byte> entry_bytes(const std::wstring& name, std::uint16_t type = item_types::folder) {
    const auto made = make_item_id(ItemData(name, type, 0));
    std::vector<std::byte> bytes(word_at(made.get(), 0));
    std::memcpy(bytes.data(), made.get(), bytes.size());
    return bytes;
}

TEST(ItemData, new_record_is_unset) {
    const ItemData item;
    EXPECT_TRUE(item.name.view().empty());
    EXPECT_EQ(0xFFFF, item.type);
    EXPECT_EQ(0xFFFF, item.index);
}

TEST(MakeItemId, fields_stand_at_their_offsets) {
    const auto id = make_item_id(ItemData(L"C:\\Ab", item_types::cloud_folder, 0x0102));
    EXPECT_EQ(2 * 5 + 14, word_at(id.get(), 0));
    EXPECT_EQ(0x6868, word_at(id.get(), 2));
    EXPECT_EQ(0x5050, word_at(id.get(), 4));
    EXPECT_EQ(0x0102, word_at(id.get(), 6));
    EXPECT_EQ(5, word_at(id.get(), 8));
    EXPECT_EQ(0, std::memcmp(L"C:\\Ab", reinterpret_cast<const std::byte*>(id.get()) + 10, 10));
}

TEST(MakeItemId, name_is_followed_by_four_zero_bytes_and_the_list_end) {
    const auto id = make_item_id(ItemData(L"C:\\Ab", item_types::folder, 1));
    for (std::size_t offset = 20; offset < 26; offset += 2) {
        EXPECT_EQ(0, word_at(id.get(), offset));
    }
    EXPECT_EQ(26u, ILGetSize(id.get())) << "the size word leaves out the list's own end";
}

TEST(MakeItemId, name_of_no_characters_gives_an_entry_of_14_bytes) {
    const auto id = make_item_id(ItemData(L"", item_types::folder, 1));
    EXPECT_EQ(14, word_at(id.get(), 0));
    EXPECT_EQ(16u, ILGetSize(id.get()));
    EXPECT_EQ(L"", item_name_of(id.get()));
    EXPECT_EQ(item_types::folder, item_type_of(id.get()));
}

TEST(MakeItemId, length_of_a_very_long_name_is_taken_modulo_65536) {
    std::wstring name(65536 + 3, L'x');
    name.replace(0, 3, L"abc");
    const auto id = make_item_id(ItemData(name, item_types::folder, 1));
    EXPECT_EQ(3, word_at(id.get(), 8));
    EXPECT_EQ(20, word_at(id.get(), 0));
    EXPECT_EQ(L"abc", item_name_of(id.get()));
}

TEST(MakeItemId, longest_name_that_the_size_word_can_hold_is_kept_whole) {
    const std::wstring name(32760, L'x');
    const auto id = make_item_id(ItemData(name, item_types::folder, 1));
    EXPECT_EQ(65534, word_at(id.get(), 0));
    EXPECT_EQ(name, item_name_of(id.get()));
}

TEST(MakeItemId, name_too_long_for_the_size_word_is_cut_and_the_list_stays_sound) {
    const auto id = make_item_id(ItemData(std::wstring(40000, L'x'), item_types::folder, 1));
    EXPECT_EQ(65534, word_at(id.get(), 0));
    EXPECT_EQ(32760u, item_name_of(id.get()).size());
    EXPECT_EQ(65536u, ILGetSize(id.get()));
}

TEST(MakeItemId, whole_round_trip_keeps_name_and_type) {
    const std::wstring name = L"D:\\Häuser \x65E5\x672C\xD83D\xDE00\\";
    const auto id = make_item_id(ItemData(name, item_types::addons, 7));
    EXPECT_EQ(name, item_name_of(id.get()));
    EXPECT_EQ(item_types::addons, item_type_of(id.get()));
    EXPECT_TRUE(is_own_item_id(id.get()));
}

TEST(ItemIdReaders, entry_that_is_not_there_reads_as_foreign) {
    EXPECT_FALSE(is_own_item_id(nullptr));
    EXPECT_EQ(0xFFFF, item_type_of(nullptr));
    EXPECT_EQ(L"", item_name_of(nullptr));
}

TEST(ItemIdReaders, entry_of_11_bytes_reads_as_foreign) {
    auto bytes = entry_bytes(L"name");
    put_word(bytes.data(), 0, 11);
    EXPECT_EQ(0xFFFF, item_type_of(as_list(bytes.data())));
    EXPECT_EQ(L"", item_name_of(as_list(bytes.data())));
}

TEST(ItemIdReaders, entry_of_12_bytes_is_our_own) {
    auto bytes = entry_bytes(L"name");
    put_word(bytes.data(), 0, 12);
    EXPECT_EQ(item_types::folder, item_type_of(as_list(bytes.data())));
    EXPECT_EQ(L"n", item_name_of(as_list(bytes.data()))) << "as much of the name as lies inside the entry";
}

TEST(ItemIdReaders, other_signature_reads_as_foreign) {
    auto bytes = entry_bytes(L"name");
    put_word(bytes.data(), 2, 0x6869);
    EXPECT_FALSE(is_own_item_id(as_list(bytes.data())));
    EXPECT_EQ(0xFFFF, item_type_of(as_list(bytes.data())));
    EXPECT_EQ(L"", item_name_of(as_list(bytes.data())));
}

TEST(ItemIdReaders, entry_at_an_odd_address_reads_as_any_other) {
    const auto bytes = entry_bytes(L"C:\\odd");
    std::vector<std::byte> shifted(bytes.size() + 1);
    std::memcpy(shifted.data() + 1, bytes.data(), bytes.size());
    EXPECT_EQ(item_types::folder, item_type_of(as_list(shifted.data() + 1)));
    EXPECT_EQ(L"C:\\odd", item_name_of(as_list(shifted.data() + 1)));
}

TEST(ItemIdReaders, length_beyond_the_entry_is_bounded_by_the_entry) {
    auto bytes = entry_bytes(L"name");
    put_word(bytes.data(), 8, 0xFFFF);
    const guarded_buffer buffer(bytes);
    const std::wstring name = item_name_of(as_list(buffer.data()));
    EXPECT_EQ(0, buffer.overruns());
    // The padding lies inside the entry, so it counts as name where the length says so.
    EXPECT_EQ(std::wstring(L"name\0\0", 6), name);
}

TEST(ItemIdReaders, length_shorter_than_the_entry_is_believed) {
    auto bytes = entry_bytes(L"name");
    put_word(bytes.data(), 8, 2);
    EXPECT_EQ(L"na", item_name_of(as_list(bytes.data())));
}

TEST(ItemIdReaders, entry_cut_off_anywhere_is_read_to_its_own_end_only) {
    const auto whole = entry_bytes(L"C:\\Some folder");
    for (std::size_t size = 2; size <= whole.size(); ++size) {
        auto cut = whole;
        cut.resize(size);
        put_word(cut.data(), 0, static_cast<std::uint16_t>(size));
        const guarded_buffer buffer(cut);
        (void)is_own_item_id(as_list(buffer.data()));
        (void)item_type_of(as_list(buffer.data()));
        const std::wstring name = item_name_of(as_list(buffer.data()));
        EXPECT_EQ(0, buffer.overruns()) << size;
        EXPECT_LE(name.size() * 2, size) << size;
    }
}

TEST(ItemIdReaders, random_entries_are_never_read_past_their_end) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::byte> bytes(2 + random() % 64);
        for (std::byte& byte : bytes) {
            byte = static_cast<std::byte>(random());
        }
        put_word(bytes.data(), 0, static_cast<std::uint16_t>(bytes.size()));
        if (bytes.size() >= 4 && round % 4 != 0) {
            put_word(bytes.data(), 2, 0x6868);
        }
        const guarded_buffer buffer(bytes);
        (void)item_type_of(as_list(buffer.data()));
        (void)item_name_of(as_list(buffer.data()));
        ASSERT_EQ(0, buffer.overruns()) << "round " << round;
    }
}

}  // namespace
