#include <algorithm>
#include <cwctype>

#include "namespace/folder/columns.h"
#include "testkit/imports/import_patch.h"
#include "testkit/memory/guarded_buffer.h"
#include "tests/unit/namespace/folder_fixture.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

class OrvNameSpaceFolder : public folder_test {
  protected:
    [[nodiscard]] std::wstring name_of(PCUITEMID_CHILD id, SHGDNF flags) {
        STRRET value{};
        EXPECT_EQ(S_OK, folder->GetDisplayNameOf(id, flags, &value));
        return text_of(value);
    }
};

TEST_F(OrvNameSpaceFolder, name_in_other_letter_case_finds_the_item) {
    std::wstring name = list_of(*folder.Get()).front().name;
    std::transform(name.begin(), name.end(), name.begin(),
                   [](wchar_t c) { return std::iswupper(c) ? std::towlower(c) : std::towupper(c); });
    PIDLIST_RELATIVE id = nullptr;
    ULONG eaten = 0;
    ASSERT_EQ(S_OK, folder->ParseDisplayName(nullptr, nullptr, name.data(), &eaten, &id, nullptr));
    const ov::com::unique_task_memory<ITEMIDLIST_RELATIVE> owned(id);
    EXPECT_EQ(name.size(), eaten);
    EXPECT_EQ(list_of(*folder.Get()).front().name, item_name_of(id));
    EXPECT_TRUE(ILIsEmpty(ILNext(id))) << "one entry and the end of the list";
}

TEST_F(OrvNameSpaceFolder, part_of_a_name_finds_nothing) {
    std::wstring name = list_of(*folder.Get()).front().name;
    name.pop_back();
    auto* id = reinterpret_cast<PIDLIST_RELATIVE>(this);
    ULONG eaten = 3;
    ULONG attributes = 5;
    EXPECT_EQ(E_INVALIDARG,
              folder->ParseDisplayName(nullptr, nullptr, name.data(), &eaten, &id, &attributes));
    EXPECT_EQ(nullptr, id);
    EXPECT_EQ(3u, eaten);
    EXPECT_EQ(5u, attributes);
    name += L"..";
    EXPECT_EQ(E_INVALIDARG, folder->ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &id, nullptr));
    EXPECT_EQ(E_INVALIDARG,
              folder->ParseDisplayName(nullptr, nullptr, std::wstring().data(), nullptr, &id, nullptr));
}

TEST_F(OrvNameSpaceFolder, parsing_leaves_two_attributes_of_a_folder) {
    std::wstring name = list_of(*folder.Get()).front().name;
    PIDLIST_RELATIVE id = nullptr;
    ULONG attributes = 0xFFFFFFFF;
    ASSERT_EQ(S_OK, folder->ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &id, &attributes));
    CoTaskMemFree(id);
    EXPECT_EQ(0xA0000000u, attributes);
}

TEST_F(OrvNameSpaceFolder, parsing_leaves_one_attribute_of_an_action_entry) {
    std::wstring name = text(0x4000C);
    ASSERT_FALSE(name.empty());
    PIDLIST_RELATIVE id = nullptr;
    ULONG attributes = 0xFFFFFFFF;
    ASSERT_EQ(S_OK, folder->ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &id, &attributes));
    EXPECT_EQ(item_types::one_click_restore, item_type_of(id));
    CoTaskMemFree(id);
    EXPECT_EQ(0x80000000u, attributes);
    attributes = 0x20000000;
    ASSERT_EQ(S_OK, folder->ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &id, &attributes));
    CoTaskMemFree(id);
    EXPECT_EQ(0u, attributes);
}

TEST_F(OrvNameSpaceFolder, parsing_without_the_needed_pointers_is_refused) {
    wchar_t name[] = L"x";
    PIDLIST_RELATIVE id = nullptr;
    EXPECT_EQ(E_POINTER, folder->ParseDisplayName(nullptr, nullptr, name, nullptr, nullptr, nullptr));
    EXPECT_EQ(E_INVALIDARG, folder->ParseDisplayName(nullptr, nullptr, nullptr, nullptr, &id, nullptr));
}

void* WINAPI no_memory(SIZE_T) {
    return nullptr;
}

TEST_F(OrvNameSpaceFolder, parsing_without_memory_says_so) {
    std::wstring name = list_of(*folder.Get()).front().name;
    const import_patch<decltype(CoTaskMemAlloc)> patch(GetModuleHandleW(nullptr), "ole32.dll",
                                                       "CoTaskMemAlloc", no_memory);
    PIDLIST_RELATIVE id = nullptr;
    EXPECT_EQ(E_OUTOFMEMORY, folder->ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &id, nullptr));
    EXPECT_EQ(nullptr, id);
    STRRET value{};
    EXPECT_EQ(E_OUTOFMEMORY, folder->GetDisplayNameOf(reinterpret_cast<PCUITEMID_CHILD>(
                                                          "\x12\0hh\x10\x10\0\0\2\0a\0b\0\0\0\0\0\0"),
                                                      SHGDN_FORPARSING, &value));
}

TEST_F(OrvNameSpaceFolder, binding_opens_the_real_folder) {
    for (const std::uint16_t type : {item_types::folder, item_types::cloud_folder}) {
        ComPtr<IShellFolder> real;
        ASSERT_EQ(S_OK, folder->BindToObject(entry(type).get(), nullptr, IID_IShellFolder, &real));
        wchar_t name[] = L"system32";
        PIDLIST_RELATIVE id = nullptr;
        EXPECT_EQ(S_OK, real->ParseDisplayName(nullptr, nullptr, name, nullptr, &id, nullptr));
        CoTaskMemFree(id);
    }
}

TEST_F(OrvNameSpaceFolder, binding_follows_the_entries_after_the_first) {
    const auto first = entry(item_types::folder);
    ComPtr<IShellFolder> windows;
    ASSERT_EQ(S_OK, folder->BindToObject(first.get(), nullptr, IID_IShellFolder, &windows));
    wchar_t name[] = L"system32";
    PIDLIST_RELATIVE rest = nullptr;
    ASSERT_EQ(S_OK, windows->ParseDisplayName(nullptr, nullptr, name, nullptr, &rest, nullptr));
    const ov::com::unique_absolute_id_list both(
        ILCombine(reinterpret_cast<PCIDLIST_ABSOLUTE>(first.get()), rest));
    CoTaskMemFree(rest);

    ComPtr<IPersistFolder2> inner;
    ASSERT_EQ(S_OK, folder->BindToObject(both.get(), nullptr, IID_IPersistFolder2, &inner));
    PIDLIST_ABSOLUTE where = nullptr;
    ASSERT_EQ(S_OK, inner->GetCurFolder(&where));
    const ov::com::unique_absolute_id_list owned(where);
    wchar_t path[MAX_PATH] = L"";
    EXPECT_TRUE(SHGetPathFromIDListW(where, path));
    EXPECT_STREQ(L"C:\\windows\\system32", path);
}

TEST_F(OrvNameSpaceFolder, storage_is_bound_like_an_object) {
    ComPtr<IShellFolder> real;
    EXPECT_EQ(S_OK, folder->BindToStorage(entry(item_types::folder).get(), nullptr, IID_IShellFolder, &real));
    void* result = this;
    EXPECT_EQ(E_NOTIMPL,
              folder->BindToStorage(entry(item_types::addons).get(), nullptr, IID_IShellFolder, &result));
    EXPECT_EQ(nullptr, result);
}

TEST_F(OrvNameSpaceFolder, what_is_no_folder_cannot_be_bound) {
    for (const std::uint16_t type :
         {item_types::one_click_restore, item_types::addons, item_types::reserved_with_icon,
          item_types::reserved, std::uint16_t{0x1234}}) {
        void* result = this;
        EXPECT_EQ(E_NOTIMPL, folder->BindToObject(entry(type).get(), nullptr, IID_IShellFolder, &result));
        EXPECT_EQ(nullptr, result);
    }
    void* result = this;
    EXPECT_EQ(E_NOTIMPL, folder->BindToObject(foreign_entry().get(), nullptr, IID_IShellFolder, &result));
    EXPECT_EQ(nullptr, result);
    EXPECT_EQ(E_NOTIMPL, folder->BindToObject(nullptr, nullptr, IID_IShellFolder, &result));
    EXPECT_EQ(E_POINTER,
              folder->BindToObject(entry(item_types::folder).get(), nullptr, IID_IShellFolder, nullptr));
}

TEST_F(OrvNameSpaceFolder, item_without_a_path_cannot_be_bound) {
    void* result = this;
    EXPECT_EQ(E_NOTIMPL,
              folder->BindToObject(entry(item_types::folder, L"").get(), nullptr, IID_IShellFolder, &result));
    EXPECT_EQ(nullptr, result);
}

TEST_F(OrvNameSpaceFolder, path_that_gives_no_id_list_is_out_of_memory) {
    void* result = this;
    EXPECT_EQ(E_OUTOFMEMORY, folder->BindToObject(entry(item_types::folder, L"Q:\\no\\such\\path").get(),
                                                  nullptr, IID_IShellFolder, &result));
    EXPECT_EQ(nullptr, result);
}

HRESULT WINAPI no_desktop(IShellFolder** result) {
    *result = nullptr;
    return static_cast<HRESULT>(0x80040123);
}

PIDLIST_ABSOLUTE WINAPI no_combined(LPCITEMIDLIST, LPCITEMIDLIST) {
    return nullptr;
}

TEST_F(OrvNameSpaceFolder, failures_of_the_shell_while_binding_are_passed_on) {
    const auto first = entry(item_types::folder);
    const ov::com::unique_absolute_id_list two(
        ILCombine(reinterpret_cast<PCIDLIST_ABSOLUTE>(first.get()), first.get()));
    void* result = this;
    {
        const import_patch<decltype(SHGetDesktopFolder)> patch(GetModuleHandleW(nullptr), "shell32.dll",
                                                               "SHGetDesktopFolder", no_desktop);
        EXPECT_EQ(static_cast<HRESULT>(0x80040123),
                  folder->BindToObject(first.get(), nullptr, IID_IShellFolder, &result));
    }
    const import_patch<decltype(no_combined)> patch(GetModuleHandleW(nullptr), "shell32.dll", "ILCombine",
                                                    no_combined);
    EXPECT_EQ(E_OUTOFMEMORY, folder->BindToObject(two.get(), nullptr, IID_IShellFolder, &result));
    EXPECT_EQ(nullptr, result);
}

TEST_F(OrvNameSpaceFolder, all_items_compare_equal) {
    const auto a = entry(item_types::folder, L"C:\\a");
    const auto b = entry(item_types::addons, L"b");
    EXPECT_EQ(S_OK, folder->CompareIDs(0, a.get(), b.get()));
    EXPECT_EQ(S_OK, folder->CompareIDs(1, b.get(), a.get()));
    EXPECT_EQ(S_OK, folder->CompareIDs(0, nullptr, nullptr));
    EXPECT_EQ(S_OK, folder->CompareIDs(SHCIDS_CANONICALONLY, foreign_entry().get(), a.get()));
}

TEST_F(OrvNameSpaceFolder, folders_have_the_attributes_of_real_folders) {
    for (const std::uint16_t type : {item_types::folder, item_types::cloud_folder}) {
        const auto id = entry(type);
        PCUITEMID_CHILD ids[] = {id.get()};
        SFGAOF attributes = 0xFFFFFFFF;
        EXPECT_EQ(S_OK, folder->GetAttributesOf(1, ids, &attributes));
        EXPECT_EQ(0xF0800008u, attributes);
        attributes = SFGAO_FOLDER | SFGAO_CANDELETE;
        EXPECT_EQ(S_OK, folder->GetAttributesOf(1, ids, &attributes));
        EXPECT_EQ(static_cast<SFGAOF>(SFGAO_FOLDER), attributes);
    }
}

TEST_F(OrvNameSpaceFolder, all_else_has_no_attributes) {
    const auto restore = entry(item_types::one_click_restore);
    const auto foreign = foreign_entry();
    for (PCUITEMID_CHILD id : {static_cast<PCUITEMID_CHILD>(restore.get()),
                               static_cast<PCUITEMID_CHILD>(foreign.get()), PCUITEMID_CHILD{}}) {
        SFGAOF attributes = 0xFFFFFFFF;
        EXPECT_EQ(S_OK, folder->GetAttributesOf(1, &id, &attributes));
        EXPECT_EQ(0u, attributes);
    }
}

TEST_F(OrvNameSpaceFolder, attributes_of_other_than_one_item_are_refused) {
    const auto id = entry(item_types::folder);
    PCUITEMID_CHILD ids[] = {id.get(), id.get()};
    SFGAOF attributes = 0xFFFFFFFF;
    EXPECT_EQ(E_INVALIDARG, folder->GetAttributesOf(2, ids, &attributes));
    EXPECT_EQ(E_INVALIDARG, folder->GetAttributesOf(0, ids, &attributes));
    EXPECT_EQ(0xFFFFFFFFu, attributes);
    EXPECT_EQ(E_POINTER, folder->GetAttributesOf(1, nullptr, &attributes));
    EXPECT_EQ(E_POINTER, folder->GetAttributesOf(1, ids, nullptr));
}

TEST_F(OrvNameSpaceFolder, parsing_name_is_the_stored_path_as_it_stands) {
    const auto id = entry(item_types::folder, L"C:\\windows\\");
    EXPECT_EQ(L"C:\\windows\\", name_of(id.get(), SHGDN_FORPARSING));
    EXPECT_EQ(L"C:\\windows\\", name_of(id.get(), SHGDN_FORPARSING | SHGDN_FORADDRESSBAR));
}

TEST_F(OrvNameSpaceFolder, every_other_name_is_the_display_name) {
    const auto id = entry(item_types::folder, L"C:\\windows");
    for (const DWORD flags : {DWORD{SHGDN_NORMAL}, DWORD{SHGDN_INFOLDER}, DWORD{SHGDN_FOREDITING},
                              DWORD{SHGDN_FORADDRESSBAR}, DWORD{SHGDN_FORPARSING | SHGDN_INFOLDER}}) {
        EXPECT_EQ(L"windows", name_of(id.get(), flags)) << flags;
    }
}

TEST_F(OrvNameSpaceFolder, entry_without_a_name_has_none_of_either_kind) {
    const auto foreign = foreign_entry();
    STRRET value{};
    for (const DWORD flags : {DWORD{SHGDN_NORMAL}, DWORD{SHGDN_FORPARSING}}) {
        EXPECT_EQ(E_INVALIDARG, folder->GetDisplayNameOf(foreign.get(), flags, &value));
        EXPECT_EQ(E_INVALIDARG, folder->GetDisplayNameOf(nullptr, flags, &value));
    }
    EXPECT_EQ(E_INVALIDARG,
              folder->GetDisplayNameOf(entry(item_types::folder, L"").get(), SHGDN_FORPARSING, &value));
    EXPECT_EQ(E_POINTER, folder->GetDisplayNameOf(foreign.get(), SHGDN_NORMAL, nullptr));
}

TEST_F(OrvNameSpaceFolder, items_cannot_be_renamed) {
    auto* renamed = reinterpret_cast<PITEMID_CHILD>(this);
    EXPECT_EQ(E_NOTIMPL, folder->SetNameOf(nullptr, entry(item_types::folder).get(), L"x", 0, &renamed));
    EXPECT_EQ(nullptr, renamed);
    EXPECT_EQ(E_NOTIMPL, folder->SetNameOf(nullptr, nullptr, nullptr, 0, nullptr));
}

TEST_F(OrvNameSpaceFolder, hostile_entry_is_read_by_no_operation_past_its_end) {
    auto sound = entry(item_types::folder, L"C:\\windows");
    std::vector<std::byte> bytes(sound->mkid.cb);
    std::memcpy(bytes.data(), sound.get(), bytes.size());
    const std::uint16_t lie = 0xFFFF;
    std::memcpy(bytes.data() + offsetof(item_id_layout::header, length), &lie, sizeof(lie));
    const guarded_buffer buffer(bytes);
    const auto id = reinterpret_cast<PCUITEMID_CHILD>(buffer.data());

    SFGAOF attributes = 0xFFFFFFFF;
    EXPECT_EQ(S_OK, folder->GetAttributesOf(1, &id, &attributes));
    STRRET value{};
    EXPECT_EQ(S_OK, folder->GetDisplayNameOf(id, SHGDN_NORMAL, &value));
    EXPECT_EQ(L"windows", text_of(value));
    EXPECT_EQ(S_OK, folder->GetDisplayNameOf(id, SHGDN_FORPARSING, &value));
    EXPECT_EQ(L"C:\\windows", text_of(value));
    VARIANT property;
    EXPECT_EQ(S_OK, folder->GetDetailsEx(id, &item_name_key, &property));
    VariantClear(&property);
    SHELLDETAILS details{};
    EXPECT_EQ(S_OK, folder->GetDetailsOf(id, 0, &details));
    (void)text_of(details.str);
    EXPECT_EQ(0, buffer.overruns());
}

}  // namespace
