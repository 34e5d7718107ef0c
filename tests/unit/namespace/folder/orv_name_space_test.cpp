#include "namespace/folder/orv_name_space.h"

#include <shlguid.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "ovufc/com/adopt.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/namespace/folder_fixture.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

class OrvNameSpace : public folder_test {};

ULONG references_of(IUnknown& object) {
    object.AddRef();
    return object.Release();
}

TEST_F(OrvNameSpace, new_folder_has_the_one_reference_of_its_maker) {
    EXPECT_EQ(1u, references_of(*static_cast<IShellFolder2*>(folder.Get())));
}

TEST_F(OrvNameSpace, last_release_frees_the_folder) {
    const auto before = ov::module_state::namespace_object_count.value();
    auto* made = ov::com::make_object<orvNameSpace>();
    EXPECT_EQ(before + 1, ov::module_state::namespace_object_count.value());
    EXPECT_EQ(0u, made->Release());
    EXPECT_EQ(before, ov::module_state::namespace_object_count.value());
}

TEST_F(OrvNameSpace, six_interfaces_and_iunknown_are_answered) {
    for (const IID* iid : {&IID_IUnknown, &IID_IShellFolder, &IID_IShellFolder2, &IID_IPersist,
                           &IID_IPersistFolder, &IID_IPersistFolder2, &IID_IExplorerPaneVisibility}) {
        ComPtr<IUnknown> face;
        EXPECT_EQ(S_OK, folder->QueryInterface(*iid, reinterpret_cast<void**>(face.GetAddressOf())));
        EXPECT_NE(nullptr, face);
    }
}

TEST_F(OrvNameSpace, other_interfaces_are_not_answered) {
    for (const IID* iid : {&IID_IContextMenu, &IID_IShellView, &IID_IPersistFolder3, &IID_IDropTarget,
                           &IID_IStorage, &IID_IMarshal, &IID_IEnumIDList}) {
        void* face = this;
        EXPECT_EQ(E_NOINTERFACE, folder->QueryInterface(*iid, &face));
        EXPECT_EQ(nullptr, face);
    }
}

TEST_F(OrvNameSpace, each_face_leads_back_to_one_identity) {
    ComPtr<IUnknown> identity;
    ASSERT_EQ(S_OK,
              folder.Get()->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.GetAddressOf())));
    for (const IID* iid : {&IID_IShellFolder, &IID_IPersistFolder2, &IID_IExplorerPaneVisibility}) {
        ComPtr<IUnknown> face;
        ComPtr<IUnknown> again;
        ASSERT_EQ(S_OK, folder->QueryInterface(*iid, reinterpret_cast<void**>(face.GetAddressOf())));
        ASSERT_EQ(S_OK, face.As(&again));
        EXPECT_EQ(identity.Get(), again.Get());
    }
}

TEST_F(OrvNameSpace, query_without_an_out_pointer_is_refused) {
    EXPECT_EQ(E_POINTER, folder->QueryInterface(IID_IUnknown, nullptr));
}

TEST_F(OrvNameSpace, class_id_is_the_folders_own) {
    CLSID clsid{};
    EXPECT_EQ(S_OK, folder->GetClassID(&clsid));
    wchar_t text[64];
    StringFromGUID2(clsid, text, 64);
    EXPECT_STREQ(L"{9B2E6D14-C3A8-4E57-A1F0-5D8C27B4E913}", text);
    EXPECT_EQ(E_POINTER, folder->GetClassID(nullptr));
}

TEST_F(OrvNameSpace, folder_that_was_not_initialised_has_no_location) {
    auto* location = reinterpret_cast<PIDLIST_ABSOLUTE>(this);
    EXPECT_EQ(E_FAIL, folder->GetCurFolder(&location));
    EXPECT_EQ(nullptr, location);
    EXPECT_EQ(E_POINTER, folder->GetCurFolder(nullptr));
}

TEST_F(OrvNameSpace, location_given_to_it_is_handed_out_as_a_copy) {
    const ov::com::unique_absolute_id_list desktop(ILCreateFromPathW(L"C:\\windows"));
    ASSERT_EQ(S_OK, folder->Initialize(desktop.get()));
    PIDLIST_ABSOLUTE location = nullptr;
    ASSERT_EQ(S_OK, folder->GetCurFolder(&location));
    const ov::com::unique_absolute_id_list owned(location);
    EXPECT_NE(desktop.get(), location);
    EXPECT_TRUE(ILIsEqual(desktop.get(), location));
}

TEST_F(OrvNameSpace, second_location_replaces_the_first) {
    const ov::com::unique_absolute_id_list first(ILCreateFromPathW(L"C:\\windows"));
    const ov::com::unique_absolute_id_list second(ILCreateFromPathW(L"C:\\windows\\system32"));
    ASSERT_EQ(S_OK, folder->Initialize(first.get()));
    ASSERT_EQ(S_OK, folder->Initialize(second.get()));
    PIDLIST_ABSOLUTE location = nullptr;
    ASSERT_EQ(S_OK, folder->GetCurFolder(&location));
    EXPECT_TRUE(ILIsEqual(second.get(), ov::com::unique_absolute_id_list(location).get()));
}

// What a folder does with its locations, and a second `Initialize` in the middle of it.
struct location_watch {
    orvNameSpace* folder = nullptr;
    PCIDLIST_ABSOLUTE next_place = nullptr;  // given to the folder at the next copy
    std::vector<const void*> made;
    std::vector<const void*> freed;

    // As another thread would, between the folder's look at its location and the use of it.
    void initialize_again() {
        if (const auto place = std::exchange(next_place, nullptr)) {
            EXPECT_EQ(S_OK, folder->Initialize(place));
        }
    }
    [[nodiscard]] bool is_alive(const void* list) const {
        return std::find(freed.begin(), freed.end(), list) == freed.end();
    }
};
location_watch* watch;

template <class Function>
Function* not_by_import(const wchar_t* dll, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(dll), name)));
}

PIDLIST_ABSOLUTE WINAPI watched_clone(LPCITEMIDLIST list) {
    watch->initialize_again();
    if (!watch->is_alive(list)) {
        ADD_FAILURE() << "the list that is being copied was freed";
        return nullptr;
    }
    auto* const clone =
        not_by_import<PIDLIST_ABSOLUTE WINAPI(LPCITEMIDLIST)>(L"shell32.dll", "ILClone")(list);
    watch->made.push_back(clone);
    return clone;
}

void WINAPI watched_free(void* memory) {
    watch->freed.push_back(memory);
    not_by_import<decltype(CoTaskMemFree)>(L"ole32.dll", "CoTaskMemFree")(memory);
}

HRESULT WINAPI menu_after_initialize(const DEFCONTEXTMENU* menu, REFIID, void**) {
    watch->initialize_again();
    EXPECT_TRUE(watch->is_alive(menu->pidlFolder));
    return S_OK;
}

class Relocated : public folder_test {
  protected:
    Relocated() {
        watch = &seen;
        seen.folder = folder.Get();
        EXPECT_EQ(S_OK, folder->Initialize(first.get()));
    }

    location_watch seen;
    const ov::com::unique_absolute_id_list first{ILCreateFromPathW(L"C:\\windows")};
    const ov::com::unique_absolute_id_list second{ILCreateFromPathW(L"C:\\windows\\system32")};

  private:
    const import_patch<decltype(watched_clone)> clones_{GetModuleHandleW(nullptr), "shell32.dll", "ILClone",
                                                        watched_clone};
    const import_patch<decltype(watched_free)> frees_{GetModuleHandleW(nullptr), "ole32.dll", "CoTaskMemFree",
                                                      watched_free};
};

TEST_F(Relocated, while_its_location_is_copied_the_copy_is_of_the_earlier_one) {
    seen.next_place = second.get();
    PIDLIST_ABSOLUTE location = nullptr;
    ASSERT_EQ(S_OK, folder->GetCurFolder(&location));
    EXPECT_TRUE(ILIsEqual(first.get(), ov::com::unique_absolute_id_list(location).get()));
    ASSERT_EQ(S_OK, folder->GetCurFolder(&location));
    EXPECT_TRUE(ILIsEqual(second.get(), ov::com::unique_absolute_id_list(location).get()));
}

TEST_F(Relocated, while_the_shell_makes_a_menu_the_earlier_location_lives_on) {
    const import_patch<decltype(SHCreateDefaultContextMenu)> patch(
        GetModuleHandleW(nullptr), "shell32.dll", "SHCreateDefaultContextMenu", menu_after_initialize);
    seen.next_place = second.get();
    const auto id = entry(item_types::folder);
    PCUITEMID_CHILD ids[] = {id.get()};
    void* menu = nullptr;
    EXPECT_EQ(S_OK, folder->GetUIObjectOf(nullptr, 1, ids, IID_IContextMenu, nullptr, &menu));
    EXPECT_EQ(nullptr, seen.next_place);
}

TEST_F(Relocated, folder_that_ends_frees_every_location_once) {
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(S_OK, folder->Initialize(second.get()));
    }
    seen.freed.clear();
    folder.Reset();
    ASSERT_EQ(6u, seen.made.size());
    for (const void* list : seen.made) {
        EXPECT_EQ(1, std::count(seen.freed.begin(), seen.freed.end(), list));
    }
}

PIDLIST_ABSOLUTE WINAPI no_clone(LPCITEMIDLIST) {
    return nullptr;
}

TEST_F(OrvNameSpace, location_that_cannot_be_copied_is_a_failure) {
    const ov::com::unique_absolute_id_list place(ILCreateFromPathW(L"C:\\windows"));
    EXPECT_EQ(E_FAIL, folder->Initialize(nullptr));
    {
        const import_patch<decltype(no_clone)> patch(GetModuleHandleW(nullptr), "shell32.dll", "ILClone",
                                                     no_clone);
        EXPECT_EQ(E_FAIL, folder->Initialize(place.get()));
    }
    ASSERT_EQ(S_OK, folder->Initialize(place.get()));
    const import_patch<decltype(no_clone)> patch(GetModuleHandleW(nullptr), "shell32.dll", "ILClone",
                                                 no_clone);
    PIDLIST_ABSOLUTE location = nullptr;
    EXPECT_EQ(E_OUTOFMEMORY, folder->GetCurFolder(&location));
    EXPECT_EQ(nullptr, location);
}

TEST_F(OrvNameSpace, ribbon_is_forced_on) {
    EXPLORERPANESTATE state = 7;
    EXPECT_EQ(S_OK, folder->GetPaneState(EP_Ribbon, &state));
    EXPECT_EQ(0x20001u, state);
    EXPECT_EQ(E_POINTER, folder->GetPaneState(EP_Ribbon, nullptr));
}

TEST_F(OrvNameSpace, every_other_pane_keeps_the_callers_value) {
    for (const GUID* pane : {&EP_NavPane, &EP_Commands, &EP_DetailsPane, &EP_PreviewPane, &GUID_NULL}) {
        EXPLORERPANESTATE state = 7;
        EXPECT_EQ(S_OK, folder->GetPaneState(*pane, &state));
        EXPECT_EQ(7u, state);
        EXPECT_EQ(S_OK, folder->GetPaneState(*pane, nullptr));
    }
}

TEST_F(OrvNameSpace, without_a_driver_the_users_own_folders_and_the_restore_entry_are_listed) {
    std::vector<listed_item> expected;
    std::uint16_t index = 0;
    for (const KNOWNFOLDERID* id :
         {&FOLDERID_Desktop, &FOLDERID_Documents, &FOLDERID_Pictures, &FOLDERID_Objects3D, &FOLDERID_Contacts,
          &FOLDERID_Music, &FOLDERID_SavedGames, &FOLDERID_Videos}) {
        wchar_t* path = nullptr;
        if (SUCCEEDED(SHGetKnownFolderPath(*id, 0, nullptr, &path))) {
            expected.push_back({path, item_types::folder, index++});
        }
        CoTaskMemFree(path);
    }
    ASSERT_GE(expected.size(), 6u) << "this system knows too few folders to test with";
    expected.push_back({text(0x4000C), item_types::one_click_restore, index});
    EXPECT_EQ(expected, list_of(*folder.Get()));
}

HRESULT WINAPI no_known_folder(REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) {
    *path = nullptr;
    return E_FAIL;
}

TEST_F(OrvNameSpace, user_folder_that_cannot_be_resolved_is_left_out) {
    const import_patch<decltype(SHGetKnownFolderPath)> patch(GetModuleHandleW(nullptr), "shell32.dll",
                                                             "SHGetKnownFolderPath", no_known_folder);
    ComPtr<orvNameSpace> bare;
    bare = ov::com::adopt(ov::com::make_object<orvNameSpace>());
    EXPECT_EQ((std::vector<listed_item>{{text(0x4000C), item_types::one_click_restore, 0}}),
              list_of(*bare.Get()));
}

}  // namespace
