#include "namespace/folder/columns.h"
#include "ovufc/com/adopt.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/namespace/folder/recording_view.h"
#include "tests/unit/namespace/folder_fixture.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

class OrvNameSpaceView : public folder_test {};

// What the system would have made the view from.
struct {
    UINT size;
    ComPtr<IShellFolder> folder;
    IShellView* outer;
    IShellFolderViewCB* callback;
    ComPtr<recording_view> view;
} asked;

HRESULT WINAPI make_recording_view(const SFV_CREATE* creation, IShellView** result) {
    asked.size = creation->cbSize;
    asked.folder = creation->pshf;
    asked.outer = creation->psvOuter;
    asked.callback = creation->psfvcb;
    asked.view = ov::com::adopt(ov::com::make_object<recording_view>());
    return asked.view.CopyTo(result);
}

HRESULT WINAPI make_plain_view(const SFV_CREATE* creation, IShellView** result) {
    const HRESULT made = make_recording_view(creation, result);
    asked.view->is_folder_view = false;
    return made;
}

HRESULT WINAPI make_ungrouped_view(const SFV_CREATE* creation, IShellView** result) {
    const HRESULT made = make_recording_view(creation, result);
    asked.view->group_result = E_NOTIMPL;
    return made;
}

HRESULT WINAPI make_no_view(const SFV_CREATE*, IShellView** result) {
    *result = nullptr;
    return static_cast<HRESULT>(0x80040555);
}

TEST_F(OrvNameSpaceView, default_view_is_made_for_this_folder_and_grouped_by_type) {
    // Wine's view does not tell what it was asked for.
    const import_patch<decltype(SHCreateShellFolderView)> patch(
        GetModuleHandleW(nullptr), "shell32.dll", "SHCreateShellFolderView", make_recording_view);
    ComPtr<IShellView> view;
    ASSERT_EQ(S_OK, folder->CreateViewObject(nullptr, IID_IShellView, &view));
    EXPECT_EQ(32u, asked.size);
    EXPECT_EQ(static_cast<IShellFolder*>(folder.Get()), asked.folder.Get());
    EXPECT_EQ(nullptr, asked.outer);
    EXPECT_EQ(nullptr, asked.callback);
    EXPECT_EQ((std::vector<std::wstring>{L"group", L"mode"}), asked.view->calls);
    EXPECT_TRUE(GUID_NULL == asked.view->group_key.fmtid);
    EXPECT_EQ(2u, asked.view->group_key.pid);
    EXPECT_TRUE(asked.view->ascending);
    EXPECT_EQ(static_cast<UINT>(FVM_ICON), asked.view->mode);
    EXPECT_EQ(static_cast<IShellView*>(asked.view.Get()), view.Get());
    asked = {};
}

TEST_F(OrvNameSpaceView, folder_keeps_no_reference_to_the_view_nor_the_view_making_to_it) {
    const import_patch<decltype(SHCreateShellFolderView)> patch(
        GetModuleHandleW(nullptr), "shell32.dll", "SHCreateShellFolderView", make_recording_view);
    ComPtr<IShellView> view;
    ASSERT_EQ(S_OK, folder->CreateViewObject(nullptr, IID_IShellView, &view));
    asked.folder.Reset();
    EXPECT_EQ(2u, folder.Get()->AddRef());
    EXPECT_EQ(1u, folder.Get()->Release());
    view.Reset();
    EXPECT_EQ(2u, asked.view.Get()->AddRef());
    EXPECT_EQ(1u, asked.view.Get()->Release());
    asked = {};
}

TEST_F(OrvNameSpaceView, view_that_is_no_folder_view_is_handed_out_as_it_is) {
    const import_patch<decltype(SHCreateShellFolderView)> patch(GetModuleHandleW(nullptr), "shell32.dll",
                                                                "SHCreateShellFolderView", make_plain_view);
    ComPtr<IShellView> view;
    EXPECT_EQ(S_OK, folder->CreateViewObject(nullptr, IID_IShellView, &view));
    EXPECT_EQ(static_cast<IShellView*>(asked.view.Get()), view.Get());
    EXPECT_TRUE(asked.view->calls.empty());
    asked = {};
}

TEST_F(OrvNameSpaceView, view_that_cannot_group_still_gets_its_mode) {
    const import_patch<decltype(SHCreateShellFolderView)> patch(
        GetModuleHandleW(nullptr), "shell32.dll", "SHCreateShellFolderView", make_ungrouped_view);
    ComPtr<IShellView> view;
    EXPECT_EQ(S_OK, folder->CreateViewObject(nullptr, IID_IShellView, &view));
    EXPECT_EQ((std::vector<std::wstring>{L"group", L"mode"}), asked.view->calls);
    asked = {};
}

TEST_F(OrvNameSpaceView, view_that_cannot_be_made_fails_with_the_systems_code) {
    const import_patch<decltype(SHCreateShellFolderView)> patch(GetModuleHandleW(nullptr), "shell32.dll",
                                                                "SHCreateShellFolderView", make_no_view);
    void* result = this;
    EXPECT_EQ(static_cast<HRESULT>(0x80040555), folder->CreateViewObject(nullptr, IID_IShellView, &result));
    EXPECT_EQ(nullptr, result);
}

TEST_F(OrvNameSpaceView, systems_own_view_opens_in_icon_mode) {
    ComPtr<IShellView> view;
    ASSERT_EQ(S_OK, folder->CreateViewObject(nullptr, IID_IShellView, &view));
    ComPtr<IFolderView2> modes;
    ASSERT_EQ(S_OK, view.As(&modes));
    UINT mode = 0;
    EXPECT_EQ(S_OK, modes->GetCurrentViewMode(&mode));
    EXPECT_EQ(static_cast<UINT>(FVM_ICON), mode);
}

TEST_F(OrvNameSpaceView, every_other_view_object_is_refused) {
    for (const IID* iid : {&IID_IUnknown, &IID_IDropTarget, &IID_IContextMenu, &IID_IShellView2}) {
        void* result = this;
        EXPECT_EQ(E_NOINTERFACE, folder->CreateViewObject(nullptr, *iid, &result));
        EXPECT_EQ(nullptr, result);
    }
    EXPECT_EQ(E_POINTER, folder->CreateViewObject(nullptr, IID_IShellView, nullptr));
}

TEST_F(OrvNameSpaceView, category_provider_is_one) {
    ComPtr<IUnknown> provider;
    ASSERT_EQ(S_OK, folder->CreateViewObject(nullptr, IID_ICategoryProvider,
                                             reinterpret_cast<void**>(provider.GetAddressOf())));
    ComPtr<ICategoryProvider> same;
    EXPECT_EQ(S_OK, provider.As(&same));
}

}  // namespace
