#include <algorithm>
#include <array>

#include "namespace/categories/name_space_category_provider.h"
#include "namespace/categories/type_categories.h"
#include "namespace/folder/columns.h"
#include "ovufc/com/adopt.h"
#include "testkit/imports/format_message.h"
#include "tests/unit/namespace/folder_fixture.h"
#include "tests/unit/namespace/unable_folder.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

constexpr GUID other_guid = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
constexpr PROPERTYKEY other_key = {other_guid, 2};

class NameSpaceCategories : public folder_test {
  protected:
    NameSpaceCategories() {
        EXPECT_EQ(S_OK, folder->CreateViewObject(nullptr, IID_ICategoryProvider, &provider));
    }
    ComPtr<ICategoryProvider> provider;
};

TEST_F(NameSpaceCategories, category_guid_is_the_products_own) {
    GUID guid = other_guid;
    SHCOLUMNID key = other_key;
    EXPECT_EQ(S_OK, provider->GetDefaultCategory(&guid, &key));
    wchar_t text[64];
    StringFromGUID2(guid, text, 64);
    EXPECT_STREQ(L"{2E8B5D17-94AC-4F30-8D61-C7A2B9E04F85}", text);
    EXPECT_TRUE(other_key == key) << "the key is left unwritten";
    EXPECT_EQ(S_OK, provider->GetDefaultCategory(&guid, nullptr));
    EXPECT_EQ(E_POINTER, provider->GetDefaultCategory(nullptr, &key));
}

TEST_F(NameSpaceCategories, name_and_type_can_be_categorised) {
    EXPECT_EQ(S_OK, provider->CanCategorizeOnSCID(&item_name_key));
    EXPECT_EQ(S_OK, provider->CanCategorizeOnSCID(&item_type_key));
    EXPECT_EQ(S_FALSE, provider->CanCategorizeOnSCID(&other_key));
    EXPECT_EQ(S_FALSE, provider->CanCategorizeOnSCID(&grouping_key));
    EXPECT_EQ(E_INVALIDARG, provider->CanCategorizeOnSCID(nullptr));
}

TEST_F(NameSpaceCategories, all_zero_key_of_any_number_has_the_category) {
    for (const DWORD pid : {0, 1, 2, 77}) {
        const SHCOLUMNID key = {GUID{}, pid};
        GUID guid = other_guid;
        EXPECT_EQ(S_OK, provider->GetCategoryForSCID(&key, &guid));
        EXPECT_TRUE(type_category_guid == guid);
    }
    GUID guid = other_guid;
    EXPECT_EQ(S_OK, provider->GetCategoryForSCID(&item_name_key, &guid));
    EXPECT_TRUE(type_category_guid == guid);
}

TEST_F(NameSpaceCategories, every_other_key_even_the_item_type_has_none) {
    GUID guid = other_guid;
    EXPECT_EQ(E_INVALIDARG, provider->GetCategoryForSCID(&item_type_key, &guid));
    EXPECT_EQ(E_INVALIDARG, provider->GetCategoryForSCID(&other_key, &guid));
    const SHCOLUMNID name_format_other_number = {item_name_key.fmtid, 11};
    EXPECT_EQ(E_INVALIDARG, provider->GetCategoryForSCID(&name_format_other_number, &guid));
    EXPECT_TRUE(other_guid == guid);
    EXPECT_EQ(E_INVALIDARG, provider->GetCategoryForSCID(nullptr, &guid));
    EXPECT_EQ(E_POINTER, provider->GetCategoryForSCID(&item_name_key, nullptr));
}

TEST_F(NameSpaceCategories, heading_is_copied_without_a_terminator) {
    const std::wstring heading = text(0x40009);
    ASSERT_FALSE(heading.empty());
    std::wstring buffer(heading.size() + 2, L'#');
    EXPECT_EQ(S_OK, provider->GetCategoryName(&type_category_guid, buffer.data(),
                                              static_cast<UINT>(buffer.size())));
    EXPECT_EQ(heading + L"##", buffer);
}

TEST_F(NameSpaceCategories, capacity_of_exactly_the_heading_is_enough) {
    const std::wstring heading = text(0x40009);
    std::wstring buffer(heading.size(), L'#');
    EXPECT_EQ(S_OK, provider->GetCategoryName(&type_category_guid, buffer.data(),
                                              static_cast<UINT>(buffer.size())));
    EXPECT_EQ(heading, buffer);
}

TEST_F(NameSpaceCategories, heading_fails_for_a_small_buffer_and_another_category) {
    const std::wstring heading = text(0x40009);
    std::wstring buffer(heading.size(), L'#');
    const std::wstring untouched = buffer;
    EXPECT_EQ(E_FAIL, provider->GetCategoryName(&type_category_guid, buffer.data(),
                                                static_cast<UINT>(heading.size() - 1)));
    EXPECT_EQ(E_FAIL,
              provider->GetCategoryName(&other_guid, buffer.data(), static_cast<UINT>(buffer.size())));
    EXPECT_EQ(untouched, buffer);
    EXPECT_EQ(E_FAIL, provider->GetCategoryName(&type_category_guid, nullptr, 0));
    EXPECT_EQ(E_FAIL, provider->GetCategoryName(&other_guid, nullptr, 400));
    EXPECT_EQ(E_POINTER, provider->GetCategoryName(nullptr, buffer.data(), 4));
    EXPECT_EQ(E_POINTER, provider->GetCategoryName(&type_category_guid, nullptr, 400));
}

TEST_F(NameSpaceCategories, one_category_is_listed_and_then_an_invalid_argument) {
    ComPtr<IEnumGUID> list;
    ASSERT_EQ(S_OK, provider->EnumCategories(&list));
    GUID guid = other_guid;
    ULONG fetched = 0;
    EXPECT_EQ(S_OK, list->Next(1, &guid, &fetched));
    EXPECT_TRUE(type_category_guid == guid);
    EXPECT_EQ(1u, fetched);
    guid = other_guid;
    fetched = 9;
    EXPECT_EQ(E_INVALIDARG, list->Next(1, &guid, &fetched));
    EXPECT_EQ(E_INVALIDARG, list->Next(1, &guid, &fetched));
    EXPECT_TRUE(other_guid == guid);
    EXPECT_EQ(9u, fetched);
    EXPECT_EQ(S_OK, list->Reset());
    EXPECT_EQ(S_OK, list->Next(1, &guid, nullptr));
}

TEST_F(NameSpaceCategories, other_requests_to_the_list_are_refused) {
    ComPtr<IEnumGUID> list;
    ASSERT_EQ(S_OK, provider->EnumCategories(&list));
    std::array<GUID, 2> guids{other_guid, other_guid};
    ULONG fetched = 9;
    EXPECT_EQ(E_INVALIDARG, list->Next(2, guids.data(), &fetched));
    EXPECT_EQ(E_INVALIDARG, list->Next(0, guids.data(), &fetched));
    EXPECT_EQ(E_POINTER, list->Next(1, nullptr, &fetched));
    EXPECT_EQ(9u, fetched);
    EXPECT_EQ(S_OK, list->Skip(1));
    EXPECT_EQ(E_INVALIDARG, list->Next(1, guids.data(), &fetched));
    EXPECT_EQ(S_OK, list->Reset());
    EXPECT_EQ(S_OK, list->Skip(0));
    EXPECT_EQ(S_OK, list->Next(1, guids.data(), &fetched));
    IEnumGUID* clone = list.Get();
    EXPECT_EQ(E_NOTIMPL, list->Clone(&clone));
    EXPECT_EQ(E_NOTIMPL, list->Clone(nullptr));
    EXPECT_EQ(nullptr, clone);
    EXPECT_EQ(E_POINTER, provider->EnumCategories(nullptr));
}

TEST_F(NameSpaceCategories, categorizer_is_made_with_one_reference) {
    ComPtr<ICategorizer> categorizer;
    ASSERT_EQ(S_OK, provider->CreateCategory(&type_category_guid, IID_ICategorizer, &categorizer));
    EXPECT_EQ(2u, categorizer.Get()->AddRef());
    EXPECT_EQ(1u, categorizer.Get()->Release());
}

TEST_F(NameSpaceCategories, only_a_categorizer_of_the_one_category_is_made) {
    void* result = this;
    EXPECT_EQ(E_NOINTERFACE, provider->CreateCategory(&type_category_guid, IID_IUnknown, &result));
    EXPECT_EQ(nullptr, result);
    result = this;
    EXPECT_EQ(E_NOINTERFACE, provider->CreateCategory(&other_guid, IID_IUnknown, &result));
    EXPECT_EQ(E_INVALIDARG, provider->CreateCategory(&other_guid, IID_ICategorizer, &result));
    EXPECT_EQ(nullptr, result);
    EXPECT_EQ(E_INVALIDARG, provider->CreateCategory(nullptr, IID_ICategorizer, &result));
    EXPECT_EQ(E_POINTER, provider->CreateCategory(&type_category_guid, IID_ICategorizer, nullptr));
}

TEST_F(NameSpaceCategories, folder_lives_as_long_as_any_of_them) {
    const auto before = ov::module_state::namespace_object_count.value();
    ComPtr<ICategorizer> categorizer;
    ASSERT_EQ(S_OK, provider->CreateCategory(&type_category_guid, IID_ICategorizer, &categorizer));
    folder.Reset();
    provider.Reset();
    EXPECT_EQ(before, ov::module_state::namespace_object_count.value());
    categorizer.Reset();
    EXPECT_EQ(before - 1, ov::module_state::namespace_object_count.value());
}

TEST_F(NameSpaceCategories, each_object_has_one_interface_besides_iunknown) {
    ComPtr<ICategorizer> categorizer;
    ASSERT_EQ(S_OK, provider->CreateCategory(&type_category_guid, IID_ICategorizer, &categorizer));
    ComPtr<IEnumGUID> list;
    ASSERT_EQ(S_OK, provider->EnumCategories(&list));
    const std::array<std::pair<IUnknown*, const IID*>, 3> objects{{
        {provider.Get(), &IID_ICategoryProvider},
        {categorizer.Get(), &IID_ICategorizer},
        {list.Get(), &IID_IEnumGUID},
    }};
    for (const auto& [object, own] : objects) {
        for (const IID* iid : {&IID_IUnknown, &IID_ICategoryProvider, &IID_ICategorizer, &IID_IEnumGUID,
                               &IID_IShellFolder, &IID_IMarshal}) {
            ComPtr<IUnknown> face;
            const bool answered = *iid == IID_IUnknown || *iid == *own;
            EXPECT_EQ(answered ? S_OK : E_NOINTERFACE,
                      object->QueryInterface(*iid, reinterpret_cast<void**>(face.GetAddressOf())));
            EXPECT_EQ(answered, face != nullptr);
        }
    }
}

class NameSpaceCategorizer : public NameSpaceCategories {
  protected:
    NameSpaceCategorizer() {
        EXPECT_EQ(S_OK, provider->CreateCategory(&type_category_guid, IID_ICategorizer, &categorizer));
    }
    ComPtr<ICategorizer> categorizer;
};

TEST_F(NameSpaceCategorizer, each_type_falls_into_its_category) {
    const auto folder_entry = entry(item_types::folder);
    const auto cloud = entry(item_types::cloud_folder);
    const auto restore = entry(item_types::one_click_restore);
    const auto addons = entry(item_types::addons);
    const auto managed = entry(item_types::reserved_with_icon);
    const auto reserved = entry(item_types::reserved);
    const auto unknown = entry(0x4321);
    const auto foreign = foreign_entry();
    const std::array<PCUITEMID_CHILD, 9> ids{folder_entry.get(), cloud.get(),   restore.get(),
                                             addons.get(),       managed.get(), reserved.get(),
                                             unknown.get(),      foreign.get(), nullptr};
    std::array<DWORD, 9> categories{};
    EXPECT_EQ(S_OK, categorizer->GetCategory(9, ids.data(), categories.data()));
    EXPECT_EQ((std::array<DWORD, 9>{1, 2, 3, 4, 3, 1, 1, 1, 1}), categories);
}

TEST_F(NameSpaceCategorizer, no_entries_have_no_categories) {
    EXPECT_EQ(S_OK, categorizer->GetCategory(0, nullptr, nullptr));
    DWORD category = 9;
    const auto one = entry(item_types::folder);
    PCUITEMID_CHILD id = one.get();
    EXPECT_EQ(E_POINTER, categorizer->GetCategory(1, nullptr, &category));
    EXPECT_EQ(E_POINTER, categorizer->GetCategory(1, &id, nullptr));
    EXPECT_EQ(9u, category);
}

TEST_F(NameSpaceCategorizer, description_is_cut_to_the_capacity_without_a_terminator) {
    const std::wstring description = text(0x40008);
    ASSERT_GT(description.size(), 3u);
    std::wstring buffer(description.size() + 3, L'#');
    EXPECT_EQ(S_OK, categorizer->GetDescription(buffer.data(), static_cast<UINT>(buffer.size())));
    EXPECT_EQ(description + L"###", buffer);
    buffer.assign(6, L'#');
    EXPECT_EQ(S_OK, categorizer->GetDescription(buffer.data(), 3));
    EXPECT_EQ(description.substr(0, 3) + L"###", buffer);
    EXPECT_EQ(S_OK, categorizer->GetDescription(buffer.data(), 0));
    EXPECT_EQ(E_POINTER, categorizer->GetDescription(nullptr, 3));
}

TEST_F(NameSpaceCategorizer, each_category_has_its_name) {
    for (DWORD id = 1; id <= 4; ++id) {
        CATEGORY_INFO info;
        std::memset(&info, 0x23, sizeof(info));
        EXPECT_EQ(S_OK, categorizer->GetCategoryInfo(id, &info));
        const std::wstring name = text(0x40003 + id);
        ASSERT_FALSE(name.empty());
        EXPECT_EQ(name, std::wstring(info.wszName, name.size()));
        EXPECT_EQ(0x2323, info.wszName[name.size()]) << "no terminator is written";
        int flags = 0;  // as bytes: what the caller left there need not be a flag
        std::memcpy(&flags, &info.cif, sizeof flags);
        EXPECT_EQ(0x23232323, flags) << "the flags are not touched";
    }
}

DWORD WINAPI long_message(DWORD, LPCVOID, DWORD, DWORD, LPWSTR text, DWORD capacity_chars, char**) {
    constexpr DWORD length_chars = 200;
    if (capacity_chars <= length_chars) {
        return 0;
    }
    std::fill_n(text, length_chars, L'n');
    text[length_chars] = L'\0';
    return length_chars;
}

TEST_F(NameSpaceCategorizer, category_name_takes_half_of_the_field_at_most) {
    const import_patch<format_message> patch(GetModuleHandleW(nullptr), "kernel32.dll", "FormatMessageW",
                                             long_message);
    CATEGORY_INFO info;
    std::memset(&info, 0x23, sizeof(info));
    EXPECT_EQ(S_OK, categorizer->GetCategoryInfo(1, &info));
    EXPECT_EQ(std::wstring(130, L'n'), std::wstring(info.wszName, 130));
    EXPECT_EQ(0x2323, info.wszName[130]);
}

TEST_F(NameSpaceCategorizer, unknown_category_leaves_the_record_as_it_was) {
    for (const DWORD id : {0, 5, 7, -1}) {
        CATEGORY_INFO info;
        std::memset(&info, 0x23, sizeof(info));
        CATEGORY_INFO before = info;
        EXPECT_EQ(S_OK, categorizer->GetCategoryInfo(id, &info));
        EXPECT_EQ(0, std::memcmp(&before, &info, sizeof(info)));
        EXPECT_EQ(S_OK, categorizer->GetCategoryInfo(id, nullptr));
    }
    EXPECT_EQ(E_POINTER, categorizer->GetCategoryInfo(1, nullptr));
}

TEST_F(NameSpaceCategorizer, categories_are_compared_by_their_ids) {
    const auto compared = [&](DWORD a, DWORD b) {
        const HRESULT result = categorizer->CompareCategory(CATSORT_DEFAULT, a, b);
        EXPECT_TRUE(SUCCEEDED(result));
        EXPECT_EQ(0, HRESULT_FACILITY(result));
        return static_cast<short>(HRESULT_CODE(result));
    };
    EXPECT_EQ(0, compared(2, 2));
    EXPECT_EQ(-1, compared(1, 2));
    EXPECT_EQ(3, compared(4, 1));
    EXPECT_EQ(0, compared(1, 65537));
}

// A folder that cannot tell its items' types: what it says must come through.
class untold_folder;
using untold_folder_base =
    ov::com::com_object<untold_folder, ov::com::bases<IShellFolder2>,
                        ov::com::answers<ov::com::answer<IUnknown>, ov::com::answer<IShellFolder2>>>;

class untold_folder final : public ov::test::unable_folder<untold_folder_base> {
  public:
    virtual ~untold_folder() = default;
    STDMETHODIMP
    GetDefaultSearchGUID(GUID*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    EnumSearches(IEnumExtraSearch**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetDefaultColumn(DWORD, ULONG*, ULONG*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetDefaultColumnState(UINT, SHCOLSTATEF*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetDetailsEx(PCUITEMID_CHILD, const SHCOLUMNID*, VARIANT* value) noexcept override {
        if (++asked == 2) {
            return static_cast<HRESULT>(0x80040777);
        }
        value->vt = VT_UI2;
        value->uiVal = item_types::addons;
        return S_OK;
    }
    STDMETHODIMP
    GetDetailsOf(PCUITEMID_CHILD, UINT, SHELLDETAILS*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    MapColumnToSCID(UINT, SHCOLUMNID*) noexcept override { return E_NOTIMPL; }

    int asked = 0;
};

TEST_F(NameSpaceCategorizer, first_failure_of_the_folder_ends_the_call) {
    ComPtr<untold_folder> untold;
    untold = ov::com::adopt(ov::com::make_object<untold_folder>());
    ComPtr<NameSpaceCategoryProvider> its_provider;
    its_provider = ov::com::adopt(ov::com::make_object<NameSpaceCategoryProvider>(untold.Get()));
    ComPtr<ICategorizer> its_categorizer;
    ASSERT_EQ(S_OK, its_provider->CreateCategory(&type_category_guid, IID_ICategorizer, &its_categorizer));
    const std::array<PCUITEMID_CHILD, 3> ids{};
    std::array<DWORD, 3> categories{9, 9, 9};
    EXPECT_EQ(static_cast<HRESULT>(0x80040777),
              its_categorizer->GetCategory(3, ids.data(), categories.data()));
    EXPECT_EQ((std::array<DWORD, 3>{4, 9, 9}), categories);
    EXPECT_EQ(2, untold->asked);
}

}  // namespace
