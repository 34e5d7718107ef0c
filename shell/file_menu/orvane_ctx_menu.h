#pragma once

#include <windows.h>
#include <shlobj.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "module/state/module_state.h"
#include "ovufc/com/com_object.h"
#include "ovufc/win/ui_handle.h"

namespace ov::shell {

/// The context menu of a file or folder: one object serves one right-click.
///
/// `Initialize` learns the selection and fixes the mode: nothing, one folder, or one file whose history the
/// driver keeps. The other methods only read what it left. A menu that was initialised before a One Click
/// Restore began keeps its items; only `Initialize` looks at that flag. For one thread at a time.
class OrvaneCtxMenu final
    : public com::com_object<OrvaneCtxMenu, com::bases<IContextMenu, IShellExtInit>,
                             com::answers<com::answer<IUnknown, IShellExtInit>, com::answer<IShellExtInit>,
                                          com::answer<IContextMenu>>,
                             &module_state::context_menu_object_count> {
  public:
    /// Throws only std::bad_alloc.
    OrvaneCtxMenu();
    /// The icon is destroyed before its bitmap.
    ~OrvaneCtxMenu() { menuIcon.reset(); }

    /// Asks the driver about a folder: blocks for as long as that takes. Always S_OK.
    STDMETHODIMP
    Initialize(PCIDLIST_ABSOLUTE folder, IDataObject* selection, HKEY key) noexcept override;

    /// The number of command ids taken: for a folder one more than the items of its submenu, which reserves a
    /// spare one.
    STDMETHODIMP
    QueryContextMenu(HMENU menu, UINT indexMenu, UINT idCmdFirst, UINT idCmdLast,
                     UINT flags) noexcept override;
    STDMETHODIMP
    InvokeCommand(CMINVOKECOMMANDINFO* info) noexcept override;
    /// The items' texts serve as verb, help text and validation answer alike; narrow requests are refused.
    STDMETHODIMP
    GetCommandString(UINT_PTR idCmd, UINT type, UINT* reserved, LPSTR buffer, UINT cch) noexcept override;

  private:
    explicit OrvaneCtxMenu(int icon_side);

    void learn_selection(const std::wstring& path);
    void learn_folder(const std::wstring& path);
    void learn_tracked_file(const std::wstring& path);
    void forget_selection() noexcept;

    [[nodiscard]] HRESULT insert_tracked_item(HMENU menu, UINT indexMenu, UINT idCmdFirst, bool active) const;
    [[nodiscard]] HRESULT insert_folder_items(HMENU menu, UINT indexMenu, UINT idCmdFirst, bool active) const;

    [[nodiscard]] HRESULT run_folder_command(std::uint32_t command) const;
    [[nodiscard]] HRESULT protect() const;
    [[nodiscard]] HRESULT unprotect() const;
    [[nodiscard]] HRESULT show_chronels() const;

    win::unique_icon menuIcon;
    win::unique_bitmap menuBitmap;
    /// The submenu's texts, by command number.
    std::vector<std::wstring> itemTexts;
    /// Command number by command offset. Offsets count the items that are there, this map is fixed: were an
    /// item left out, those behind it would run its command. `Initialize` always shows item 1, so they agree.
    std::array<std::uint32_t, 4> commandMap;
    /// Empty unless the selection is one existing folder.
    std::wstring folderPath;
    bool protectedFolder = false;
    /// The driver restricts the user interface: no menu is shown.
    bool restricted = false;
    bool showUnprotect = false;
    bool exportsAvailable = false;
    bool unprotectBlocked = false;
    bool trackedFileMode = false;
    std::wstring trackedFilePath;
    std::wstring trackedItemText;
};

}  // namespace ov::shell
