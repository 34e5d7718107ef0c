#include "tools/stand_ins/items/id_list_array.h"

#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <cstring>
#include <vector>

#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tools/stand_ins/items/data_object.h"

namespace ov::stand_ins {
namespace {

/// A CIDA block of one folder and one item, each a list of one entry of `entry_bytes`.
std::vector<std::byte> block_of(UINT count, std::vector<UINT> offsets, std::size_t size_bytes) {
    std::vector<std::byte> block(size_bytes);
    std::memcpy(block.data(), &count, sizeof count);
    std::memcpy(block.data() + sizeof count, offsets.data(), offsets.size() * sizeof(UINT));
    return block;
}

void put_entry(std::vector<std::byte>& block, std::size_t offset, USHORT entry_bytes) {
    std::memcpy(block.data() + offset, &entry_bytes, sizeof entry_bytes);
}

/// Reads `block` as the content that a data object offers.
HRESULT read(const std::vector<std::byte>& block, item_selection& found) {
    const ITEMIDLIST_ABSOLUTE desktop{};
    Microsoft::WRL::ComPtr<IDataObject> object;
    EXPECT_EQ(create_data_object(&desktop, 0, nullptr, nullptr, IID_PPV_ARGS(object.GetAddressOf())), S_OK);
    FORMATETC format{id_list_array_format(), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium{};
    medium.tymed = TYMED_HGLOBAL;
    medium.hGlobal = GlobalAlloc(GMEM_MOVEABLE, block.size());
    {
        const global_lock lock(medium.hGlobal);
        std::memcpy(lock.data(), block.data(), block.size());
    }
    EXPECT_EQ(object->SetData(&format, &medium, TRUE), S_OK);
    return read_selection(object.Get(), found);
}

TEST(IdListArray, well_formed_block_is_read) {
    auto block = block_of(1, {12, 24}, 40);
    put_entry(block, 12, 8);
    put_entry(block, 24, 6);
    item_selection found;
    ASSERT_EQ(read(block, found), S_OK);
    EXPECT_EQ(ILGetSize(found.folder.get()), 10U);
    ASSERT_EQ(found.items.size(), 1U);
    EXPECT_EQ(ILGetSize(found.items[0].get()), 8U);
}

TEST(IdListArray, hostile_blocks_are_refused_and_read_nothing) {
    const std::vector<std::vector<std::byte>> hostile = {
        block_of(0, {12}, 40),               // no item
        block_of(0xFFFFFFFF, {12, 24}, 40),  // more items than the block can hold
        block_of(1, {12, 0x7FFFFFFF}, 40),   // an offset beyond the block
        block_of(1, {0xFFFFFFFE, 24}, 40),
    };
    for (const auto& block : hostile) {
        item_selection found;
        EXPECT_EQ(read(block, found), E_INVALIDARG);
        EXPECT_EQ(found.folder, nullptr);
        EXPECT_TRUE(found.items.empty());
    }
}

TEST(IdListArray, entries_that_run_out_of_the_block_are_refused) {
    for (const USHORT entry_bytes : {USHORT{1}, USHORT{17}, USHORT{0x7FFF}, USHORT{0xFFFF}}) {
        auto block = block_of(1, {12, 24}, 40);
        put_entry(block, 12, 8);
        put_entry(block, 24, entry_bytes);
        item_selection found;
        EXPECT_EQ(read(block, found), E_INVALIDARG) << entry_bytes;
    }
}

TEST(IdListArray, what_was_made_is_read_back) {
    const test_apartment apartment;
    PIDLIST_ABSOLUTE computer = nullptr;
    ASSERT_EQ(SHGetSpecialFolderLocation(nullptr, CSIDL_DRIVES, &computer), S_OK);
    const com::unique_absolute_id_list owner(computer);
    PCUITEMID_CHILD child = reinterpret_cast<PCUITEMID_CHILD>(computer);
    const unique_global memory = make_id_list_array(computer, 1, &child);
    ASSERT_TRUE(memory);
    const global_lock lock(memory.get());
    const auto* bytes = static_cast<const std::byte*>(lock.data());
    item_selection found;
    ASSERT_EQ(read({bytes, bytes + GlobalSize(memory.get())}, found), S_OK);
    EXPECT_TRUE(ILIsEqual(found.folder.get(), computer));
    EXPECT_EQ(ILGetSize(found.items[0].get()), ILGetSize(child));
}

}  // namespace
}  // namespace ov::stand_ins
