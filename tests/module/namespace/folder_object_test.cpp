// The shipped module's folder as a COM object: counts, aggregation, slots, and what it asks of the shell.

#include <windows.h>
#include <shellapi.h>

#include <array>

#include "ovufc/com/adopt.h"
#include "testkit/imports/import_patch.h"
#include "testkit/service/document_service.h"
#include "tests/module/namespace/module_folder.h"

namespace {

using namespace ov::test;

class NamespaceFolderObject : public module_folder_test {};

TEST_F(NamespaceFolderObject, caller_owns_the_one_reference_and_its_release_frees_the_folder) {
    void* made = nullptr;
    ASSERT_EQ(S_OK, module.create(ov::class_ids::namespace_folder, IID_IShellFolder, &made));
    EXPECT_EQ(S_FALSE, module.can_unload_now());
    auto* folder = static_cast<IShellFolder*>(made);
    EXPECT_EQ(2u, folder->AddRef());
    EXPECT_EQ(1u, folder->Release());
    EXPECT_EQ(0u, folder->Release());
    EXPECT_EQ(S_OK, module.can_unload_now());
}

TEST_F(NamespaceFolderObject, interface_that_it_does_not_have_leaves_nothing_behind) {
    void* made = this;
    EXPECT_EQ(E_NOINTERFACE, module.create(ov::class_ids::namespace_folder, IID_IContextMenu, &made));
    EXPECT_EQ(nullptr, made);
    EXPECT_EQ(S_OK, module.can_unload_now());
}

TEST_F(NamespaceFolderObject, any_of_its_interfaces_may_be_asked_for_first) {
    for (const IID* iid : {&IID_IUnknown, &IID_IShellFolder, &IID_IShellFolder2, &IID_IPersist,
                           &IID_IPersistFolder, &IID_IPersistFolder2, &IID_IExplorerPaneVisibility}) {
        void* made = nullptr;
        ASSERT_EQ(S_OK, module.create(ov::class_ids::namespace_folder, *iid, &made));
        EXPECT_EQ(0u, static_cast<IUnknown*>(made)->Release());
        EXPECT_EQ(S_OK, module.can_unload_now());
    }
}

TEST_F(NamespaceFolderObject, aggregation_is_refused) {
    void* made = nullptr;
    ASSERT_EQ(S_OK, module.get_class_object(ov::class_ids::namespace_folder, IID_IClassFactory, &made));
    const auto factory = ov::com::adopt(static_cast<IClassFactory*>(made));
    void* result = this;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(factory.Get(), IID_IUnknown, &result));
    EXPECT_EQ(nullptr, result);
}

TEST_F(NamespaceFolderObject, companion_keeps_the_module_in_memory) {
    auto folder = make_folder();
    ComPtr<IEnumIDList> list;
    ASSERT_EQ(S_OK, folder->EnumObjects(nullptr, 0, &list));
    folder.Reset();
    EXPECT_EQ(S_FALSE, module.can_unload_now());
    list.Reset();
    EXPECT_EQ(S_OK, module.can_unload_now());
}

// The order of the slots is part of the binary interface: two far ones are called by number.
TEST_F(NamespaceFolderObject, slots_stand_where_the_shell_expects_them) {
    const auto folder = make_folder();
    void** const slots = *reinterpret_cast<void***>(folder.Get());
    using map_column = HRESULT STDMETHODCALLTYPE(IShellFolder2*, UINT, SHCOLUMNID*);
    using compare_ids =
        HRESULT STDMETHODCALLTYPE(IShellFolder2*, LPARAM, PCUIDLIST_RELATIVE, PCUIDLIST_RELATIVE);
    using column_state = HRESULT STDMETHODCALLTYPE(IShellFolder2*, UINT, SHCOLSTATEF*);
    SHCOLUMNID key{};
    EXPECT_EQ(S_OK, reinterpret_cast<map_column*>(slots[19])(folder.Get(), 0, &key));
    EXPECT_EQ(10u, key.pid);
    EXPECT_EQ(S_OK, reinterpret_cast<compare_ids*>(slots[7])(folder.Get(), 0, nullptr, nullptr));
    SHCOLSTATEF state = 0;
    EXPECT_EQ(S_OK, reinterpret_cast<column_state*>(slots[16])(folder.Get(), 2, &state));
    EXPECT_EQ(0x11u, state);
}

TEST_F(NamespaceFolderObject, action_entries_carry_the_texts_of_the_resource_library) {
    const document_service service;
    const auto folder = make_folder();
    SHELLDETAILS details{};
    ASSERT_EQ(S_OK, folder->GetDetailsOf(nullptr, 0, &details));
    ASSERT_EQ(static_cast<UINT>(STRRET_WSTR), details.str.uType);
    EXPECT_STRNE(L"", details.str.pOleStr) << "orvres.dll is missing or not accepted";
    CoTaskMemFree(details.str.pOleStr);
    const auto entries = items_of(*folder.Get(), 0x6060);
    ASSERT_EQ(1u, entries.size());
    EXPECT_NE(L"", entries[0].name);
}

// What Wine's shell lacks is imported by name all the same, so that Windows binds it.
TEST_F(NamespaceFolderObject, shell_functions_are_imported_by_name) {
    for (const char* function : {"SHCreateDefaultContextMenu", "SHCreateDefaultExtractIcon",
                                 "AssocCreateForClasses", "SHCreateDataObject", "SHCreateShellFolderView",
                                 "SHCreateItemFromParsingName", "SHGetKnownFolderPath", "SHGetFileInfoW",
                                 "SHGetDesktopFolder", "ILCreateFromPathW", "ILCombine", "ILClone"}) {
        EXPECT_TRUE(imports(module.handle(), "shell32.dll", function)) << function;
    }
    EXPECT_TRUE(imports(module.handle(), "shlwapi.dll", "PathFindFileNameW"));
}

std::vector<std::wstring> seen_classes;

HRESULT WINAPI see_classes(const ASSOCIATIONELEMENT* elements, ULONG count, REFIID, void** result) {
    seen_classes.clear();
    for (ULONG i = 0; i < count; ++i) {
        seen_classes.emplace_back(elements[i].pszClass != nullptr ? elements[i].pszClass : L"(folder)");
    }
    *result = nullptr;
    return S_OK;
}

TEST_F(NamespaceFolderObject, enumerated_entries_have_the_associations_of_their_types) {
    const document_service service;
    const auto folder = make_folder();
    // Missing from Wine.
    const import_patch<decltype(AssocCreateForClasses)> patch(module.handle(), "shell32.dll",
                                                              "AssocCreateForClasses", see_classes);
    ComPtr<IEnumIDList> list;
    ASSERT_EQ(S_OK, folder->EnumObjects(nullptr, 0, &list));
    PITEMID_CHILD id = nullptr;
    ULONG fetched = 0;
    int asked = 0;
    while (list->Next(1, &id, &fetched) == S_OK) {
        void* result = nullptr;
        PCUITEMID_CHILD const_id = id;
        EXPECT_EQ(S_OK,
                  folder->GetUIObjectOf(nullptr, 1, &const_id, IID_IQueryAssociations, nullptr, &result));
        const bool is_restore = seen_in(id).type == 0x6060;
        EXPECT_EQ(is_restore ? (std::vector<std::wstring>{L"OrvaneRestoreType"})
                             : (std::vector<std::wstring>{L"OrvaneFolderType", L"(folder)"}),
                  seen_classes);
        CoTaskMemFree(id);
        ++asked;
    }
    EXPECT_GE(asked, 7);
}

}  // namespace
