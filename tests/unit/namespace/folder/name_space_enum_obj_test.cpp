#include "namespace/folder/name_space_enum_obj.h"

#include "testkit/imports/import_patch.h"
#include "tests/unit/namespace/folder_fixture.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

class NameSpaceEnumerator : public folder_test {
  protected:
    NameSpaceEnumerator() { EXPECT_EQ(S_OK, folder->EnumObjects(nullptr, SHCONTF_FOLDERS, &enumerator)); }

    // The next entry's name; empty at the end.
    [[nodiscard]] std::wstring next() {
        PITEMID_CHILD id = nullptr;
        ULONG fetched = 9;
        const HRESULT result = enumerator->Next(1, &id, &fetched);
        EXPECT_EQ(result == S_OK ? 1u : 0u, fetched);
        const ov::com::unique_child_id owned(id);
        return item_name_of(id);
    }

    ComPtr<IEnumIDList> enumerator;
};

TEST_F(NameSpaceEnumerator, items_come_one_by_one_in_order) {
    for (const listed_item& item : list_of(*folder.Get())) {
        EXPECT_EQ(item.name, next());
    }
    EXPECT_EQ(L"", next());
    EXPECT_EQ(L"", next());
}

TEST_F(NameSpaceEnumerator, flags_are_not_consulted) {
    ComPtr<IEnumIDList> none;
    ASSERT_EQ(S_OK, folder->EnumObjects(nullptr, 0, &none));
    PITEMID_CHILD id = nullptr;
    ULONG fetched = 0;
    EXPECT_EQ(S_OK, none->Next(1, &id, &fetched));
    CoTaskMemFree(id);
}

TEST_F(NameSpaceEnumerator, request_for_several_fetches_nothing) {
    PITEMID_CHILD ids[5] = {};
    ULONG fetched = 9;
    EXPECT_EQ(S_FALSE, enumerator->Next(5, ids, &fetched));
    EXPECT_EQ(0u, fetched);
    EXPECT_EQ(nullptr, ids[0]);
    EXPECT_EQ(list_of(*folder.Get()).front().name, next()) << "the position has not moved";
}

TEST_F(NameSpaceEnumerator, request_for_none_succeeds) {
    ULONG fetched = 9;
    EXPECT_EQ(S_OK, enumerator->Next(0, nullptr, &fetched));
    EXPECT_EQ(0u, fetched);
    EXPECT_EQ(S_OK, enumerator->Next(0, nullptr, nullptr));
}

TEST_F(NameSpaceEnumerator, request_without_a_count_of_the_fetched_hands_out_nothing) {
    PITEMID_CHILD id = nullptr;
    EXPECT_EQ(S_FALSE, enumerator->Next(1, &id, nullptr));
    EXPECT_EQ(nullptr, id);
    EXPECT_EQ(S_FALSE, enumerator->Next(7, &id, nullptr));
}

TEST_F(NameSpaceEnumerator, request_without_room_is_refused) {
    ULONG fetched = 9;
    EXPECT_EQ(E_POINTER, enumerator->Next(1, nullptr, &fetched));
    EXPECT_EQ(0u, fetched);
}

TEST_F(NameSpaceEnumerator, skip_past_the_end_and_reset) {
    EXPECT_EQ(S_OK, enumerator->Skip(1000000));
    EXPECT_EQ(L"", next());
    EXPECT_EQ(S_OK, enumerator->Reset());
    EXPECT_EQ(list_of(*folder.Get()).front().name, next());
}

TEST_F(NameSpaceEnumerator, skip_moves_by_its_count) {
    EXPECT_EQ(S_OK, enumerator->Skip(2));
    EXPECT_EQ(list_of(*folder.Get())[2].name, next());
}

TEST_F(NameSpaceEnumerator, clone_is_not_there) {
    IEnumIDList* clone = enumerator.Get();
    EXPECT_EQ(E_NOTIMPL, enumerator->Clone(&clone));
    EXPECT_EQ(nullptr, clone);
    EXPECT_EQ(E_NOTIMPL, enumerator->Clone(nullptr));
}

void* WINAPI no_memory(SIZE_T) {
    return nullptr;
}

TEST_F(NameSpaceEnumerator, entry_without_memory_ends_the_call_and_keeps_the_position) {
    {
        const import_patch<decltype(CoTaskMemAlloc)> patch(GetModuleHandleW(nullptr), "ole32.dll",
                                                           "CoTaskMemAlloc", no_memory);
        EXPECT_EQ(L"", next());
    }
    EXPECT_EQ(list_of(*folder.Get()).front().name, next());
}

int allocations = 0;

void* WINAPI counted_memory(SIZE_T size) {
    ++allocations;
    return HeapAlloc(GetProcessHeap(), 0, size);
}

TEST_F(NameSpaceEnumerator, each_item_costs_one_allocation) {
    allocations = 0;
    const import_patch<decltype(CoTaskMemAlloc)> patch(GetModuleHandleW(nullptr), "ole32.dll",
                                                       "CoTaskMemAlloc", counted_memory);
    PITEMID_CHILD id = nullptr;
    ULONG fetched = 0;
    int items = 0;
    while (enumerator->Next(1, &id, &fetched) == S_OK) {
        HeapFree(GetProcessHeap(), 0, id);
        ++items;
    }
    EXPECT_GT(items, 5);
    EXPECT_EQ(items, allocations);
}

TEST_F(NameSpaceEnumerator, folder_is_kept_alive_by_it) {
    const auto before = ov::module_state::namespace_object_count.value();
    folder.Reset();
    EXPECT_EQ(before, ov::module_state::namespace_object_count.value());
    EXPECT_NE(L"", next());
    enumerator.Reset();
    EXPECT_EQ(before - 1, ov::module_state::namespace_object_count.value());
}

TEST_F(NameSpaceEnumerator, one_interface_besides_iunknown) {
    ComPtr<IUnknown> unknown;
    EXPECT_EQ(S_OK, enumerator.As(&unknown));
    void* other = this;
    EXPECT_EQ(E_NOINTERFACE, enumerator->QueryInterface(IID_IShellFolder, &other));
    EXPECT_EQ(nullptr, other);
}

TEST_F(NameSpaceEnumerator, missing_out_pointer_is_refused) {
    EXPECT_EQ(E_POINTER, folder->EnumObjects(nullptr, 0, nullptr));
}

}  // namespace
