#pragma once

#include <windows.h>
#include <shlobj.h>

#include <string>
#include <vector>

#include "module/state/module_state.h"
#include "ovufc/com/com_object.h"
#include "ovufc/win/ui_handle.h"

namespace ov::shell {

/// The property-sheet handler of files: it accepts every selection and adds no page, on purpose. A file's
/// history is reached through its menu item and the dialog library instead.
///
/// Its count is one of its own, which does not keep the module loaded. For one thread at a time.
class OrvanePropertySheet final
    : public com::com_object<OrvanePropertySheet, com::bases<IShellPropSheetExt, IShellExtInit>,
                             com::answers<com::answer<IUnknown, IShellExtInit>, com::answer<IShellExtInit>,
                                          com::answer<IShellPropSheetExt>>,
                             &module_state::property_sheet_object_count> {
  public:
    OrvanePropertySheet() noexcept = default;
    ~OrvanePropertySheet() = default;

    STDMETHODIMP
    Initialize(PCIDLIST_ABSOLUTE folder, IDataObject* selection, HKEY key) noexcept override;
    STDMETHODIMP
    AddPages(LPFNSVADDPROPSHEETPAGE add_page, LPARAM context) noexcept override;
    STDMETHODIMP
    ReplacePage(EXPPS page_id, LPFNSVADDPROPSHEETPAGE replace_page, LPARAM context) noexcept override;

  private:
    // For a page to show; never filled.
    std::wstring filePath;
    win::unique_icon pageIcon;
    win::unique_bitmap pageBitmap;
    std::vector<std::wstring> entries;
};

}  // namespace ov::shell
