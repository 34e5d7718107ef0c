// What becomes of a folder when memory runs out at any of its allocations.

#include <cstring>
#include <new>
#include <string>

#include "namespace/folder/columns.h"
#include "namespace/locations/location_document.h"
#include "testkit/memory/failing_allocations.h"
#include "tests/unit/namespace/folder_fixture.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

// Runs `body` with memory for 0, 1, 2... allocations until it gets through; answers how often it did not.
template <class Body>
int run_short_of_memory(Body body) {
    return fail_each_allocation(GetModuleHandleW(nullptr), failing_allocations::mode::from_then_on, body);
}

class ShortOfMemory : public folder_test {};

TEST_F(ShortOfMemory, document_is_then_unreadable_and_nothing_worse) {
    const std::string text =
        R"({"hardDrive":{"folders":["C:\\Users\\[^\\\\]*\\Music\\","D:\\a long enough name to be allocated"]},)"
        R"("mgmtCustom":["D:\\another name of the longer kind"],"oneDrive":[],"google":[],"boxSyn":[],)"
        R"("dropBox":[],"oneDriveBusiness":[]})";
    bool sound = true;
    const int failures = run_short_of_memory([&](auto& memory) {
        const location_document document = read_location_document(text);
        const bool whole =
            document.is_complete() && document.user_folder_mask == 32 && document.entry_count() == 2;
        const bool unreadable =
            !document.is_complete() && document.user_folder_mask == 255 && document.entry_count() == 0;
        sound = sound && (memory.met() ? unreadable : whole);
    });
    EXPECT_TRUE(sound);
    EXPECT_GE(failures, 3);
}

TEST_F(ShortOfMemory, names_of_a_document_cost_no_allocation_each) {
    constexpr int names = 1000;
    std::string text = R"({"hardDrive":{"folders":[)";
    for (int name = 0; name < names; ++name) {
        text += (name == 0 ? "" : ",") + std::string(R"("D:\\a name of the longer kind)") +
                std::to_string(name) + '"';
    }
    text += R"(]},"mgmtCustom":[],"oneDrive":[],"google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})";
    std::size_t read = 0;
    const int allocations =
        run_short_of_memory([&](auto&) { read = read_location_document(text).entry_count(); });
    EXPECT_EQ(read, names);
    EXPECT_LT(allocations, 60);
}

TEST_F(ShortOfMemory, folder_is_made_whole_or_not_at_all) {
    const auto whole = list_of(*folder.Get());
    const auto live = ov::module_state::namespace_object_count.value();
    const int failures = run_short_of_memory([&](auto& memory) {
        orvNameSpace* made = nullptr;
        try {
            made = ov::com::make_object<orvNameSpace>();
        } catch (const std::bad_alloc&) {
            EXPECT_TRUE(memory.met());
        }
        memory.pause();
        if (made != nullptr) {
            EXPECT_EQ(whole, list_of(*made));
            made->Release();
        }
        EXPECT_EQ(memory.met(), made == nullptr);
    });
    EXPECT_GE(failures, 3);
    EXPECT_EQ(live, ov::module_state::namespace_object_count.value());
}

TEST_F(ShortOfMemory, location_that_cannot_be_kept_is_refused_and_the_earlier_one_stays) {
    const ov::com::unique_absolute_id_list first(ILCreateFromPathW(L"C:\\windows"));
    const ov::com::unique_absolute_id_list second(ILCreateFromPathW(L"C:\\windows\\system32"));
    ASSERT_EQ(S_OK, folder->Initialize(first.get()));
    const int failures = run_short_of_memory([&](auto& memory) {
        const HRESULT result = folder->Initialize(second.get());
        memory.pause();
        EXPECT_EQ(memory.met() ? E_FAIL : S_OK, result);
        PIDLIST_ABSOLUTE location = nullptr;
        ASSERT_EQ(S_OK, folder->GetCurFolder(&location));
        const ov::com::unique_absolute_id_list owned(location);
        EXPECT_TRUE(ILIsEqual((memory.met() ? first : second).get(), location));
    });
    EXPECT_EQ(1, failures);
}

TEST_F(ShortOfMemory, property_is_then_empty_and_no_failure) {
    const auto id = entry(item_types::folder, L"C:\\no such folder\\a name too long for the string itself");
    const int failures = run_short_of_memory([&](auto& memory) {
        VARIANT value;
        std::memset(&value, 0x5A, sizeof(value));
        const HRESULT result = folder->GetDetailsEx(id.get(), &item_name_key, &value);
        memory.pause();
        ASSERT_EQ(S_OK, result);
        ASSERT_EQ(memory.met() ? VT_EMPTY : VT_BSTR, value.vt);
        VariantClear(&value);
    });
    EXPECT_GE(failures, 1);
}

TEST_F(ShortOfMemory, operations_say_so) {
    const auto id = entry(item_types::folder, L"C:\\windows\\a name that is too long for the string itself");
    HRESULT result = S_OK;
    const auto expect_out_of_memory = [&](auto body) {
        bool sound = true;
        const int failures = run_short_of_memory([&](auto& memory) {
            result = body();
            sound = sound && (memory.met() ? result == E_OUTOFMEMORY : result == S_OK);
        });
        EXPECT_TRUE(sound);
        EXPECT_GE(failures, 1);
    };
    expect_out_of_memory([&] {
        ComPtr<IEnumIDList> list;
        const HRESULT made = folder->EnumObjects(nullptr, 0, &list);
        EXPECT_EQ(made == S_OK, list != nullptr);
        return made;
    });
    expect_out_of_memory([&] {
        STRRET name{};
        const HRESULT named = folder->GetDisplayNameOf(id.get(), SHGDN_FORPARSING, &name);
        if (named == S_OK) {
            CoTaskMemFree(name.pOleStr);
        }
        return named;
    });
    expect_out_of_memory([&] {
        ComPtr<ICategoryProvider> provider;
        return folder->CreateViewObject(nullptr, IID_ICategoryProvider,
                                        reinterpret_cast<void**>(provider.GetAddressOf()));
    });
}

}  // namespace
