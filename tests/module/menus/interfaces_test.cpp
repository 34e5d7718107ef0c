#include <gtest/gtest.h>
#include <ocidl.h>
#include <shlobj.h>
#include <wrl/client.h>

#include "module/state/class_ids.h"
#include "testkit/process/shipped_module.h"

// Every interface of the four menu and page classes, as a host sees them: faces, slots, counts.
namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;

template <class Interface>
Interface* ask(IUnknown* object) {
    Interface* face = nullptr;
    EXPECT_EQ(object->QueryInterface(IID_PPV_ARGS(&face)), S_OK);
    if (face != nullptr) {
        face->Release();
    }
    return face;
}

std::byte* address(void* face) {
    return static_cast<std::byte*>(face);
}

void expect_no_other_interface(IUnknown* object) {
    for (const IID& iid :
         {IID_IContextMenu2, IID_IContextMenu3, IID_IClassFactory, IID_IPersist, IID_IDispatch}) {
        void* face = reinterpret_cast<void*>(0x5A);
        EXPECT_EQ(object->QueryInterface(iid, &face), E_NOINTERFACE);
        EXPECT_EQ(face, nullptr);
    }
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

void expect_plain_counting(IUnknown* object) {
    const ULONG now = object->AddRef();
    EXPECT_EQ(object->AddRef(), now + 1);
    EXPECT_EQ(object->Release(), now);
    EXPECT_EQ(object->Release(), now - 1);
}

class Interfaces : public testing::Test {
  protected:
    template <class Interface>
    ComPtr<Interface> make(REFCLSID rclsid) const {
        ComPtr<Interface> made;
        EXPECT_EQ(module_.create(rclsid, IID_PPV_ARGS(&made)), S_OK);
        return made;
    }

    shipped_module module_;
};

TEST_F(Interfaces, file_menu_has_two_faces_and_is_unknown_by_the_second) {
    const auto menu = make<IContextMenu>(class_ids::shell_extension);
    auto* init = ask<IShellExtInit>(menu.Get());
    EXPECT_EQ(static_cast<void*>(ask<IUnknown>(menu.Get())), init);
    EXPECT_EQ(static_cast<void*>(ask<IUnknown>(init)), init);
    EXPECT_EQ(ask<IContextMenu>(init), menu.Get());
    EXPECT_EQ(address(init) - address(menu.Get()), static_cast<std::ptrdiff_t>(sizeof(void*)));
    expect_no_other_interface(menu.Get());
    void* site = nullptr;
    EXPECT_EQ(menu->QueryInterface(IID_IObjectWithSite, &site), E_NOINTERFACE);
}

TEST_F(Interfaces, file_menu_asked_for_by_its_second_face_is_the_same_kind_of_object) {
    const auto init = make<IShellExtInit>(class_ids::shell_extension);
    EXPECT_NE(ask<IContextMenu>(init.Get()), nullptr);
}

TEST_F(Interfaces, property_page_has_two_faces_and_is_unknown_by_the_second) {
    const auto page = make<IShellPropSheetExt>(class_ids::shell_extension);
    auto* init = ask<IShellExtInit>(page.Get());
    EXPECT_EQ(static_cast<void*>(ask<IUnknown>(page.Get())), init);
    EXPECT_EQ(ask<IShellPropSheetExt>(init), page.Get());
    EXPECT_EQ(address(init) - address(page.Get()), static_cast<std::ptrdiff_t>(sizeof(void*)));
    expect_no_other_interface(page.Get());
}

TEST_F(Interfaces, entry_menus_have_three_faces_in_order) {
    for (const CLSID& rclsid : {class_ids::one_click_restore, class_ids::addons}) {
        const auto menu = make<IContextMenu>(rclsid);
        auto* init = ask<IShellExtInit>(menu.Get());
        auto* site = ask<IObjectWithSite>(menu.Get());
        EXPECT_EQ(static_cast<void*>(ask<IUnknown>(init)), menu.Get());
        EXPECT_EQ(ask<IContextMenu>(site), menu.Get());
        EXPECT_EQ(address(init) - address(menu.Get()), static_cast<std::ptrdiff_t>(sizeof(void*)));
        EXPECT_EQ(address(site) - address(init), static_cast<std::ptrdiff_t>(sizeof(void*)));
        expect_no_other_interface(menu.Get());
    }
}

TEST_F(Interfaces, counts_are_plain_from_every_face) {
    const auto menu = make<IContextMenu>(class_ids::shell_extension);
    expect_plain_counting(menu.Get());
    expect_plain_counting(ask<IShellExtInit>(menu.Get()));
    const auto page = make<IShellPropSheetExt>(class_ids::shell_extension);
    expect_plain_counting(page.Get());
    const auto restore = make<IContextMenu>(class_ids::one_click_restore);
    expect_plain_counting(restore.Get());
    expect_plain_counting(ask<IObjectWithSite>(restore.Get()));
}

TEST_F(Interfaces, new_object_has_one_reference) {
    for (const CLSID& rclsid :
         {class_ids::shell_extension, class_ids::one_click_restore, class_ids::addons}) {
        IContextMenu* menu = nullptr;
        ASSERT_EQ(module_.create(rclsid, IID_PPV_ARGS(&menu)), S_OK);
        EXPECT_EQ(module_.can_unload_now(), S_FALSE);
        EXPECT_EQ(menu->Release(), 0U);
        EXPECT_EQ(module_.can_unload_now(), S_OK);
    }
}

// The slots themselves, called as a host written in C does.
template <class Function>
Function* slot(void* face, int index) {
    void** table = *static_cast<void***>(face);
    return reinterpret_cast<Function*>(table[index]);
}

TEST_F(Interfaces, slots_of_the_file_menu_stand_in_order) {
    const auto menu = make<IContextMenu>(class_ids::shell_extension);
    const auto query = slot<HRESULT STDMETHODCALLTYPE(void*, HMENU, UINT, UINT, UINT, UINT)>(menu.Get(), 3);
    EXPECT_EQ(query(menu.Get(), nullptr, 0, 1, 2, 0), 0) << "nothing is selected";
    const auto run = slot<HRESULT STDMETHODCALLTYPE(void*, CMINVOKECOMMANDINFO*)>(menu.Get(), 4);
    EXPECT_EQ(run(menu.Get(), nullptr), E_INVALIDARG);
    wchar_t text[32] = {};
    const auto string =
        slot<HRESULT STDMETHODCALLTYPE(void*, UINT_PTR, UINT, UINT*, LPSTR, UINT)>(menu.Get(), 5);
    EXPECT_EQ(string(menu.Get(), 3, GCS_VERBW, nullptr, reinterpret_cast<LPSTR>(text), 32), S_OK);
    EXPECT_STREQ(text, L"Export chronels");
    auto* init = ask<IShellExtInit>(menu.Get());
    const auto initialize =
        slot<HRESULT STDMETHODCALLTYPE(void*, PCIDLIST_ABSOLUTE, IDataObject*, HKEY)>(init, 3);
    EXPECT_EQ(initialize(init, nullptr, nullptr, nullptr), S_OK);
}

TEST_F(Interfaces, slots_of_an_entry_menu_stand_in_order) {
    const auto menu = make<IContextMenu>(class_ids::addons);
    const auto query = slot<HRESULT STDMETHODCALLTYPE(void*, HMENU, UINT, UINT, UINT, UINT)>(menu.Get(), 3);
    EXPECT_EQ(query(menu.Get(), nullptr, 0, 1, 2, 0), 0);
    const auto run = slot<HRESULT STDMETHODCALLTYPE(void*, CMINVOKECOMMANDINFO*)>(menu.Get(), 4);
    EXPECT_EQ(run(menu.Get(), nullptr), E_INVALIDARG);
    const auto string =
        slot<HRESULT STDMETHODCALLTYPE(void*, UINT_PTR, UINT, UINT*, LPSTR, UINT)>(menu.Get(), 5);
    EXPECT_EQ(string(menu.Get(), 0, GCS_VERBW, nullptr, nullptr, 0), E_NOTIMPL);
    auto* sited = ask<IObjectWithSite>(menu.Get());
    const auto set = slot<HRESULT STDMETHODCALLTYPE(void*, IUnknown*)>(sited, 3);
    EXPECT_EQ(set(sited, nullptr), S_OK);
    void* site = nullptr;
    const auto get = slot<HRESULT STDMETHODCALLTYPE(void*, REFIID, void**)>(sited, 4);
    EXPECT_EQ(get(sited, IID_IUnknown, &site), E_FAIL);
}

// Adding a page would show in this counter.
int pages_added;
BOOL CALLBACK count_page(HPROPSHEETPAGE /*page*/, LPARAM /*context*/) {
    ++pages_added;
    return TRUE;
}

TEST_F(Interfaces, property_page_takes_everything_and_adds_nothing) {
    const auto page = make<IShellPropSheetExt>(class_ids::shell_extension);
    auto* init = ask<IShellExtInit>(page.Get());
    EXPECT_EQ(init->Initialize(nullptr, nullptr, nullptr), S_OK);
    pages_added = 0;
    const auto add = slot<HRESULT STDMETHODCALLTYPE(void*, LPFNSVADDPROPSHEETPAGE, LPARAM)>(page.Get(), 3);
    EXPECT_EQ(add(page.Get(), &count_page, 0), S_OK);
    const auto replace =
        slot<HRESULT STDMETHODCALLTYPE(void*, EXPPS, LPFNSVADDPROPSHEETPAGE, LPARAM)>(page.Get(), 4);
    EXPECT_EQ(replace(page.Get(), 0, &count_page, 0), E_NOTIMPL);
    EXPECT_EQ(page->AddPages(nullptr, 0), S_OK);
    EXPECT_EQ(pages_added, 0);
}

TEST_F(Interfaces, property_page_leaves_the_module_free_to_go) {
    auto page = make<IShellPropSheetExt>(class_ids::shell_extension);
    EXPECT_EQ(module_.can_unload_now(), S_OK);
    EXPECT_EQ(page.Reset(), 0U);
    EXPECT_EQ(module_.can_unload_now(), S_OK);
}

}  // namespace
}  // namespace ov::test
