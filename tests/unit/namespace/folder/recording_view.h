#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <string>
#include <vector>

#include "ovufc/com/com_object.h"

namespace ov::test {

class recording_view;

using recording_view_base = com::com_object<
    recording_view, com::bases<IShellView, IFolderView2>,
    com::answers<com::answer<IUnknown, IShellView>, com::answer<IShellView>, com::answer<IFolderView2>>>;

/// A shell view that notes what it is told about grouping and view mode. Wine's own view does not implement
/// SetGroupBy and does not tell what it was asked.
class recording_view final : public recording_view_base {
  public:
    virtual ~recording_view() = default;

    std::vector<std::wstring> calls;
    PROPERTYKEY group_key{};
    BOOL ascending = FALSE;
    UINT mode = 0;
    HRESULT group_result = S_OK;
    bool is_folder_view = true;

    STDMETHODIMP
    QueryInterface(REFIID riid, void** ppv) noexcept override {
        if (!is_folder_view && riid == IID_IFolderView2) {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        return recording_view_base::QueryInterface(riid, ppv);
    }
    STDMETHODIMP
    SetGroupBy(REFPROPERTYKEY key, BOOL up) noexcept override {
        calls.push_back(L"group");
        group_key = key;
        ascending = up;
        return group_result;
    }
    STDMETHODIMP
    SetCurrentViewMode(UINT value) noexcept override {
        calls.push_back(L"mode");
        mode = value;
        return S_OK;
    }

    STDMETHODIMP
    GetWindow(HWND*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    TranslateAccelerator(MSG*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    EnableModeless(BOOL) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    UIActivate(UINT) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    Refresh() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    CreateViewWindow(IShellView*, LPCFOLDERSETTINGS, IShellBrowser*, RECT*, HWND*) noexcept override {
        return E_NOTIMPL;
    }
    STDMETHODIMP
    DestroyViewWindow() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetCurrentInfo(LPFOLDERSETTINGS) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    AddPropertySheetPages(DWORD, LPFNSVADDPROPSHEETPAGE, LPARAM) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SaveViewState() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SelectItem(PCUITEMID_CHILD, SVSIF) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetItemObject(UINT, REFIID, void**) noexcept override { return E_NOTIMPL; }

    STDMETHODIMP
    GetCurrentViewMode(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetFolder(REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    Item(int, PITEMID_CHILD*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    ItemCount(UINT, int*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    Items(UINT, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetSelectionMarkedItem(int*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetFocusedItem(int*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetItemPosition(PCUITEMID_CHILD, POINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetSpacing(POINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetDefaultSpacing(POINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetAutoArrange() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SelectItem(int, DWORD) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SelectAndPositionItems(UINT, PCUITEMID_CHILD_ARRAY, POINT*, DWORD) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetGroupBy(PROPERTYKEY*, BOOL*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetViewProperty(PCUITEMID_CHILD, REFPROPERTYKEY, REFPROPVARIANT) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetViewProperty(PCUITEMID_CHILD, REFPROPERTYKEY, PROPVARIANT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetTileViewProperties(PCUITEMID_CHILD, LPCWSTR) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetExtendedTileViewProperties(PCUITEMID_CHILD, LPCWSTR) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetText(FVTEXTTYPE, LPCWSTR) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetCurrentFolderFlags(DWORD, DWORD) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetCurrentFolderFlags(DWORD*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetSortColumnCount(int*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetSortColumns(const SORTCOLUMN*, int) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetSortColumns(SORTCOLUMN*, int) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetItem(int, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetVisibleItem(int, BOOL, int*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetSelectedItem(int, int*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetSelection(BOOL, IShellItemArray**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetSelectionState(PCUITEMID_CHILD, DWORD*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    InvokeVerbOnSelection(LPCSTR) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetViewModeAndIconSize(FOLDERVIEWMODE, int) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetViewModeAndIconSize(FOLDERVIEWMODE*, int*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetGroupSubsetCount(UINT) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetGroupSubsetCount(UINT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    SetRedraw(BOOL) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    IsMoveInSameFolder() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    DoRename() noexcept override { return E_NOTIMPL; }
};

}  // namespace ov::test
