#include <windows.h>
#include <shellapi.h>
#include <shlwapi.h>

#include <map>

#include "ovufc/com/adopt.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/namespace/folder/recording_data_object.h"
#include "tests/unit/namespace/folder/recording_icon.h"
#include "tests/unit/namespace/folder_fixture.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

class OrvNameSpaceUi : public folder_test {
  protected:
    static HMODULE program() { return GetModuleHandleW(nullptr); }

    HRESULT ui_object(PCUITEMID_CHILD id, REFIID riid, void** result) {
        return folder->GetUIObjectOf(nullptr, 1, &id, riid, nullptr, result);
    }
};

DEFCONTEXTMENU seen_menu;
const IID* seen_menu_iid;

HRESULT WINAPI see_menu(const DEFCONTEXTMENU* menu, REFIID riid, void** result) {
    seen_menu = *menu;
    seen_menu_iid = &riid;
    *result = nullptr;
    return 0x00040123;
}

TEST_F(OrvNameSpaceUi, context_menu_is_the_systems_own_for_these_entries) {
    const ov::com::unique_absolute_id_list place(ILCreateFromPathW(L"C:\\windows"));
    ASSERT_EQ(S_OK, folder->Initialize(place.get()));
    const auto a = entry(item_types::folder);
    const auto b = entry(item_types::addons);
    PCUITEMID_CHILD ids[] = {a.get(), b.get()};
    const HWND owner = GetDesktopWindow();
    // Wine's default menu knows nothing of registered handlers; what it is asked for is what counts.
    const import_patch<decltype(SHCreateDefaultContextMenu)> patch(program(), "shell32.dll",
                                                                   "SHCreateDefaultContextMenu", see_menu);
    void* result = this;
    EXPECT_EQ(static_cast<HRESULT>(0x00040123),
              folder->GetUIObjectOf(owner, 2, ids, IID_IContextMenu, nullptr, &result));
    EXPECT_EQ(nullptr, result);
    EXPECT_EQ(owner, seen_menu.hwnd);
    EXPECT_EQ(nullptr, seen_menu.pcmcb);
    EXPECT_TRUE(ILIsEqual(place.get(), reinterpret_cast<PCIDLIST_ABSOLUTE>(seen_menu.pidlFolder)));
    EXPECT_EQ(static_cast<IShellFolder*>(folder.Get()), seen_menu.psf);
    EXPECT_EQ(2u, seen_menu.cidl);
    EXPECT_EQ(ids, seen_menu.apidl);
    EXPECT_EQ(nullptr, seen_menu.punkAssociationInfo);
    EXPECT_EQ(0u, seen_menu.cKeys);
    EXPECT_EQ(nullptr, seen_menu.aKeys);
    EXPECT_TRUE(IID_IContextMenu == *seen_menu_iid);
}

TEST_F(OrvNameSpaceUi, systems_menu_is_a_context_menu) {
    const ov::com::unique_absolute_id_list place(ILCreateFromPathW(L"C:\\windows"));
    ASSERT_EQ(S_OK, folder->Initialize(place.get()));
    ComPtr<IContextMenu> menu;
    EXPECT_EQ(S_OK, ui_object(entry(item_types::folder).get(), IID_IContextMenu, &menu));
    EXPECT_NE(nullptr, menu);
}

ComPtr<recording_icon> seen_icon;

HRESULT WINAPI make_icon(REFIID riid, void** result) {
    seen_icon = ov::com::adopt(ov::com::make_object<recording_icon>());
    return seen_icon->QueryInterface(riid, result);
}

HRESULT WINAPI make_no_icon(REFIID, void** result) {
    *result = nullptr;
    return static_cast<HRESULT>(0x80040444);
}

class OrvNameSpaceIcon : public OrvNameSpaceUi {
  protected:
    // SHCreateDefaultExtractIcon is missing from Wine altogether.
    import_patch<decltype(SHCreateDefaultExtractIcon)> patch{program(), "shell32.dll",
                                                             "SHCreateDefaultExtractIcon", make_icon};

    ~OrvNameSpaceIcon() override { seen_icon.Reset(); }

    std::vector<std::wstring> calls_for(PCUITEMID_CHILD id) {
        ComPtr<IExtractIconW> icon;
        EXPECT_EQ(S_OK, ui_object(id, IID_IExtractIconW, &icon));
        EXPECT_EQ(static_cast<IExtractIconW*>(seen_icon.Get()), icon.Get());
        return seen_icon->calls;
    }
    static std::wstring own_icon(int index) {
        return L"icon " + program_directory() + L"orvshellext.dll " + std::to_wstring(index);
    }
};

using calls = std::vector<std::wstring>;

TEST_F(OrvNameSpaceIcon, restore_entry_has_its_icon_with_the_shield) {
    EXPECT_EQ((calls{L"flags 512", own_icon(-105)}), calls_for(entry(item_types::one_click_restore).get()));
}

TEST_F(OrvNameSpaceIcon, addons_entry_has_its_icon) {
    EXPECT_EQ(calls{own_icon(-108)}, calls_for(entry(item_types::addons).get()));
}

TEST_F(OrvNameSpaceIcon, reserved_managed_type_has_its_icon) {
    EXPECT_EQ(calls{own_icon(-107)}, calls_for(entry(item_types::reserved_with_icon).get()));
}

TEST_F(OrvNameSpaceIcon, every_other_type_has_the_unknown_icon) {
    EXPECT_EQ(calls{L"icon shell32.dll 1"}, calls_for(entry(item_types::reserved).get()));
    EXPECT_EQ(calls{L"icon shell32.dll 1"}, calls_for(entry(0x1234).get()));
    EXPECT_EQ(calls{L"icon shell32.dll 1"}, calls_for(foreign_entry().get()));
    EXPECT_EQ(calls{L"icon shell32.dll 1"}, calls_for(nullptr));
}

TEST_F(OrvNameSpaceIcon, folder_has_the_icon_of_its_path) {
    SHFILEINFOW info{};
    ASSERT_NE(0u, SHGetFileInfoW(L"C:\\windows", 0, &info, sizeof(info), SHGFI_ICONLOCATION));
    const std::wstring file = info.szDisplayName[0] != L'\0' ? info.szDisplayName : L"shell32.dll";
    const int index = info.szDisplayName[0] != L'\0' ? info.iIcon : 4;
    EXPECT_EQ(calls{L"icon " + file + L" " + std::to_wstring(index)},
              calls_for(entry(item_types::folder).get()));
    EXPECT_EQ(calls{L"icon " + file + L" " + std::to_wstring(index)},
              calls_for(entry(item_types::cloud_folder).get()));
}

std::wstring asked_path;
UINT asked_flags;
const wchar_t* told_file;

DWORD_PTR WINAPI tell_location(LPCWSTR path, DWORD, SHFILEINFOW* info, UINT size, UINT flags) {
    asked_path = path;
    asked_flags = flags;
    if (told_file == nullptr || size != sizeof(*info)) {
        return 0;
    }
    wcscpy(info->szDisplayName, told_file);
    info->iIcon = -42;
    return 1;
}

TEST_F(OrvNameSpaceIcon, location_that_the_system_reports_is_used) {
    const import_patch<decltype(SHGetFileInfoW)> info(program(), "shell32.dll", "SHGetFileInfoW",
                                                      tell_location);
    told_file = L"C:\\icons.dll";
    EXPECT_EQ(calls{L"icon C:\\icons.dll -42"}, calls_for(entry(item_types::folder, L"D:\\data").get()));
    EXPECT_EQ(L"D:\\data", asked_path);
    EXPECT_EQ(static_cast<UINT>(SHGFI_ICONLOCATION), asked_flags);
}

TEST_F(OrvNameSpaceIcon, path_without_a_reported_file_has_the_folder_icon) {
    const import_patch<decltype(SHGetFileInfoW)> info(program(), "shell32.dll", "SHGetFileInfoW",
                                                      tell_location);
    told_file = nullptr;
    EXPECT_EQ(calls{L"icon shell32.dll 4"}, calls_for(entry(item_types::folder).get()));
    told_file = L"";
    EXPECT_EQ(calls{L"icon shell32.dll 4"}, calls_for(entry(item_types::cloud_folder).get()));
}

TEST_F(OrvNameSpaceIcon, extractor_that_cannot_be_made_fails_with_the_systems_code) {
    const import_patch<decltype(SHCreateDefaultExtractIcon)> none(program(), "shell32.dll",
                                                                  "SHCreateDefaultExtractIcon", make_no_icon);
    void* result = this;
    EXPECT_EQ(static_cast<HRESULT>(0x80040444),
              ui_object(entry(item_types::folder).get(), IID_IExtractIconW, &result));
    EXPECT_EQ(nullptr, result);
}

TEST_F(OrvNameSpaceIcon, narrow_extractor_is_not_there) {
    void* result = this;
    EXPECT_EQ(E_NOINTERFACE, ui_object(entry(item_types::folder).get(), IID_IExtractIconA, &result));
    EXPECT_EQ(nullptr, result);
}

std::vector<std::pair<ASSOCCLASS, std::wstring>> seen_classes;

HRESULT WINAPI see_classes(const ASSOCIATIONELEMENT* elements, ULONG count, REFIID riid, void** result) {
    seen_classes.clear();
    for (ULONG i = 0; i < count; ++i) {
        EXPECT_EQ(nullptr, elements[i].hkClass);
        seen_classes.emplace_back(elements[i].ac,
                                  elements[i].pszClass != nullptr ? elements[i].pszClass : L"");
    }
    EXPECT_TRUE(IID_IQueryAssociations == riid);
    *result = nullptr;
    return 0x00040321;
}

TEST_F(OrvNameSpaceUi, associations_are_made_from_the_types_classes) {
    // AssocCreateForClasses is missing from Wine altogether.
    const import_patch<decltype(AssocCreateForClasses)> patch(program(), "shell32.dll",
                                                              "AssocCreateForClasses", see_classes);
    using classes = decltype(seen_classes);
    const std::map<std::uint16_t, classes> expected{
        {item_types::folder, {{ASSOCCLASS_PROGID_STR, L"OrvaneFolderType"}, {ASSOCCLASS_FOLDER, L""}}},
        {item_types::cloud_folder, {{ASSOCCLASS_PROGID_STR, L"OrvaneFolderType"}, {ASSOCCLASS_FOLDER, L""}}},
        {item_types::one_click_restore, {{ASSOCCLASS_PROGID_STR, L"OrvaneRestoreType"}}},
        {item_types::addons, {{ASSOCCLASS_PROGID_STR, L"OrvaneAddonsType"}}},
    };
    for (const auto& [type, wanted] : expected) {
        void* result = this;
        EXPECT_EQ(static_cast<HRESULT>(0x00040321),
                  ui_object(entry(type).get(), IID_IQueryAssociations, &result));
        EXPECT_EQ(nullptr, result);
        EXPECT_EQ(wanted, seen_classes) << std::hex << type;
    }
}

TEST_F(OrvNameSpaceUi, entry_without_classes_has_no_associations) {
    const auto managed = entry(item_types::reserved_with_icon);
    const auto unknown = entry(0x1234);
    const auto foreign = foreign_entry();
    for (PCUITEMID_CHILD id :
         {static_cast<PCUITEMID_CHILD>(managed.get()), static_cast<PCUITEMID_CHILD>(unknown.get()),
          static_cast<PCUITEMID_CHILD>(foreign.get()), PCUITEMID_CHILD{}}) {
        void* result = this;
        EXPECT_EQ(E_NOINTERFACE, ui_object(id, IID_IQueryAssociations, &result));
        EXPECT_EQ(nullptr, result);
    }
}

ComPtr<recording_data_object> seen_data;
PCIDLIST_ABSOLUTE seen_place;
UINT seen_count;
PCUITEMID_CHILD_ARRAY seen_entries;

HRESULT WINAPI make_data(PCIDLIST_ABSOLUTE place, UINT count, PCUITEMID_CHILD_ARRAY entries,
                         IDataObject* inner, REFIID riid, void** result) {
    EXPECT_EQ(nullptr, inner);
    seen_place = place;
    seen_count = count;
    seen_entries = entries;
    return seen_data->QueryInterface(riid, result);
}

HRESULT WINAPI make_no_data(PCIDLIST_ABSOLUTE, UINT, PCUITEMID_CHILD_ARRAY, IDataObject*, REFIID,
                            void** result) {
    *result = nullptr;
    return static_cast<HRESULT>(0x80040222);
}

DWORD compared_mask;
OSVERSIONINFOEXW compared;
bool is_new_system;

WINBOOL WINAPI answer_version(OSVERSIONINFOEXW* version, DWORD types, DWORDLONG) {
    compared = *version;
    compared_mask = types;
    return is_new_system;
}

class OrvNameSpaceDataObject : public OrvNameSpaceUi {
  protected:
    // SHCreateDataObject is not implemented in Wine.
    import_patch<decltype(SHCreateDataObject)> maker{program(), "shell32.dll", "SHCreateDataObject",
                                                     make_data};
    import_patch<decltype(VerifyVersionInfoW)> version{program(), "kernel32.dll", "VerifyVersionInfoW",
                                                       answer_version};

    OrvNameSpaceDataObject() {
        is_new_system = false;
        seen_data = ov::com::adopt(ov::com::make_object<recording_data_object>());
    }
    ~OrvNameSpaceDataObject() override { seen_data.Reset(); }

    // How often a file list was set for an entry.
    int sets_for(PCUITEMID_CHILD id) {
        ComPtr<IDataObject> data;
        EXPECT_EQ(S_OK, ui_object(id, IID_IDataObject, &data));
        EXPECT_EQ(static_cast<IDataObject*>(seen_data.Get()), data.Get());
        return seen_data->sets;
    }
};

TEST_F(OrvNameSpaceDataObject, systems_object_is_made_for_the_folder_and_the_entries) {
    const ov::com::unique_absolute_id_list place(ILCreateFromPathW(L"C:\\windows"));
    ASSERT_EQ(S_OK, folder->Initialize(place.get()));
    is_new_system = true;
    const auto a = entry(item_types::folder);
    PCUITEMID_CHILD ids[] = {a.get(), a.get()};
    ComPtr<IDataObject> data;
    EXPECT_EQ(S_OK, folder->GetUIObjectOf(nullptr, 2, ids, IID_IDataObject, nullptr, &data));
    EXPECT_TRUE(ILIsEqual(place.get(), seen_place));
    EXPECT_EQ(2u, seen_count);
    EXPECT_EQ(ids, seen_entries);
    EXPECT_EQ(0, seen_data->sets) << "newer systems put a file list in by themselves";
}

TEST_F(OrvNameSpaceDataObject, older_system_gets_the_path_as_a_file_list) {
    EXPECT_EQ(1, sets_for(entry(item_types::folder, L"D:\\data").get()));
    EXPECT_EQ(15, seen_data->format.cfFormat);
    EXPECT_EQ(nullptr, seen_data->format.ptd);
    EXPECT_EQ(static_cast<DWORD>(DVASPECT_CONTENT), seen_data->format.dwAspect);
    EXPECT_EQ(-1, seen_data->format.lindex);
    EXPECT_EQ(static_cast<DWORD>(TYMED_HGLOBAL), seen_data->format.tymed);
    EXPECT_EQ(static_cast<DWORD>(TYMED_HGLOBAL), seen_data->medium_kind);
    EXPECT_TRUE(seen_data->released_to_us);

    const std::vector<std::byte>& bytes = seen_data->bytes;
    ASSERT_GE(bytes.size(), 20u + 14 + 4);
    DROPFILES header;
    std::memcpy(&header, bytes.data(), sizeof(header));
    EXPECT_EQ(20u, header.pFiles);
    EXPECT_EQ(0, header.pt.x);
    EXPECT_EQ(0, header.pt.y);
    EXPECT_FALSE(header.fNC);
    EXPECT_EQ(1, header.fWide);
    EXPECT_EQ(0, std::memcmp(L"D:\\data\0\0", bytes.data() + 20, 18));
}

TEST_F(OrvNameSpaceDataObject, older_than_windows_8_is_asked_for) {
    (void)sets_for(entry(item_types::folder).get());
    EXPECT_EQ(6u, compared.dwMajorVersion);
    EXPECT_EQ(2u, compared.dwMinorVersion);
    EXPECT_EQ(0u, compared.wServicePackMajor);
    EXPECT_EQ(static_cast<DWORD>(VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR), compared_mask);
}

TEST_F(OrvNameSpaceDataObject, cloud_folder_gets_a_file_list_too) {
    EXPECT_EQ(1, sets_for(entry(item_types::cloud_folder).get()));
}

TEST_F(OrvNameSpaceDataObject, what_is_no_folder_gets_no_file_list) {
    EXPECT_EQ(0, sets_for(entry(item_types::one_click_restore).get()));
    EXPECT_EQ(0, sets_for(entry(item_types::addons).get()));
    EXPECT_EQ(0, sets_for(foreign_entry().get()));
    EXPECT_EQ(0, sets_for(nullptr));
}

HGLOBAL freed_block;

HGLOBAL WINAPI see_free(HGLOBAL block) {
    freed_block = block;
    return nullptr;
}

TEST_F(OrvNameSpaceDataObject, block_that_is_not_taken_is_freed_and_the_object_handed_out_all_the_same) {
    seen_data->set_result = E_FAIL;
    freed_block = nullptr;
    const import_patch<decltype(GlobalFree)> patch(program(), "kernel32.dll", "GlobalFree", see_free);
    EXPECT_EQ(1, sets_for(entry(item_types::folder).get()));
    EXPECT_NE(nullptr, freed_block);
    EXPECT_EQ(seen_data->block, freed_block);
}

TEST_F(OrvNameSpaceDataObject, block_that_cannot_be_locked_is_freed_and_not_set) {
    freed_block = nullptr;
    const import_patch<decltype(GlobalLock)> unlockable(program(), "kernel32.dll", "GlobalLock",
                                                        [](HGLOBAL) WINAPI -> LPVOID { return nullptr; });
    const import_patch<decltype(GlobalFree)> patch(program(), "kernel32.dll", "GlobalFree", see_free);
    EXPECT_EQ(0, sets_for(entry(item_types::folder).get()));
    EXPECT_NE(nullptr, freed_block);
}

TEST_F(OrvNameSpaceDataObject, object_that_cannot_be_made_fails_with_the_systems_code) {
    const import_patch<decltype(SHCreateDataObject)> none(program(), "shell32.dll", "SHCreateDataObject",
                                                          make_no_data);
    void* result = this;
    EXPECT_EQ(static_cast<HRESULT>(0x80040222),
              ui_object(entry(item_types::folder).get(), IID_IDataObject, &result));
    EXPECT_EQ(nullptr, result);
}

TEST_F(OrvNameSpaceUi, every_other_object_is_refused) {
    for (const IID* iid : {&IID_IUnknown, &IID_IDropTarget, &IID_IContextMenu2, &IID_IShellFolder}) {
        void* result = this;
        EXPECT_EQ(E_NOINTERFACE, ui_object(entry(item_types::folder).get(), *iid, &result));
        EXPECT_EQ(nullptr, result);
    }
}

TEST_F(OrvNameSpaceUi, missing_pointers_are_refused) {
    const auto id = entry(item_types::folder);
    PCUITEMID_CHILD ids[] = {id.get()};
    EXPECT_EQ(E_POINTER, folder->GetUIObjectOf(nullptr, 1, ids, IID_IContextMenu, nullptr, nullptr));
    void* result = this;
    EXPECT_EQ(E_INVALIDARG, folder->GetUIObjectOf(nullptr, 1, nullptr, IID_IContextMenu, nullptr, &result));
    EXPECT_EQ(nullptr, result);
}

}  // namespace
