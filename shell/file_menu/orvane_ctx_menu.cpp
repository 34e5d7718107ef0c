#include "shell/file_menu/orvane_ctx_menu.h"

#include <algorithm>
#include <optional>

#include "ovufc/com/guard.h"
#include "ovufc/i18n/message_ids.h"
#include "ovufc/ipc/drvport/client.h"
#include "service/calls.h"
#include "shell/file_menu/folder_commands.h"
#include "shell/file_menu/folder_submenu.h"
#include "shell/file_menu/menu_icon.h"
#include "shell/file_menu/selected_path.h"
#include "shell/file_menu/tracked_file.h"

namespace ov::shell {

namespace {

namespace drvport = ipc::drvport;
namespace ids = i18n::message_ids;
using module_state::resource_strings;

constexpr const wchar_t* submenu_text = L"Orvane";

// The last bits of a request for a command's text: 1 asks for the narrow help text, 4 for wide texts of any
// kind. The narrow verb and the narrow validation have neither.
constexpr UINT any_text_bits = 5;
constexpr UINT wide_text_bit = GCS_UNICODE;

// With any of these the menu adds nothing: the default verb is not ours, and Shift-click hides our items.
constexpr UINT silent_flags = CMF_DEFAULTONLY | CMF_EXTENDEDVERBS | CMF_OPTIMIZEFORINVOKE;

void copy_bounded(const std::wstring& text, LPSTR buffer, UINT cch) noexcept {
    if (buffer == nullptr || cch == 0) {
        return;
    }
    auto* out = reinterpret_cast<wchar_t*>(buffer);
    const std::size_t length = std::min<std::size_t>(text.size(), cch - 1);
    *std::copy_n(text.c_str(), length, out) = L'\0';
}

}  // namespace

OrvaneCtxMenu::OrvaneCtxMenu() : OrvaneCtxMenu(menu_icon_side()) {}

OrvaneCtxMenu::OrvaneCtxMenu(int icon_side)
    : menuIcon(load_menu_icon(icon_side)),
      menuBitmap(make_menu_bitmap(menuIcon.get(), icon_side)),
      // The export texts are English in every language, on purpose.
      itemTexts{resource_strings.lookup(ids::menu_protect), resource_strings.lookup(ids::menu_unprotect),
                L"Export deleted files", L"Export chronels"},
      commandMap{command_protect, command_unprotect, command_export_deleted_files, command_export_chronels},
      trackedItemText(resource_strings.lookup(ids::menu_tracked_file)) {}

STDMETHODIMP
OrvaneCtxMenu::Initialize(PCIDLIST_ABSOLUTE /*folder*/, IDataObject* selection, HKEY /*key*/) noexcept {
    if (module_state::restoreInProgress != 0) {
        return S_OK;
    }
    forget_selection();
    const HRESULT result = com::guarded([&] {
        if (const std::optional<std::wstring> path = selected_path(selection)) {
            learn_selection(*path);
        }
        return S_OK;
    });
    if (FAILED(result)) {
        forget_selection();  // a selection that was read only in part gets no menu
    }
    return S_OK;
}

void OrvaneCtxMenu::forget_selection() noexcept {
    folderPath.clear();
    trackedFilePath.clear();
    protectedFolder = restricted = showUnprotect = exportsAvailable = unprotectBlocked = trackedFileMode =
        false;
}

void OrvaneCtxMenu::learn_selection(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return;
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        learn_folder(path);
    } else if (is_tracked_file(path)) {
        learn_tracked_file(path);
    }
}

void OrvaneCtxMenu::learn_folder(const std::wstring& path) {
    folderPath = path;
    protectedFolder = service::get_folder_status(folderPath, restricted, exportsAvailable);
    showUnprotect = true;
    unprotectBlocked = (drvport::flags() & ORV_FLAG_UNPROTECT_BLOCKED) != 0;
}

void OrvaneCtxMenu::learn_tracked_file(const std::wstring& path) {
    trackedFilePath = path;
    trackedFileMode = true;
    restricted = (drvport::flags() & ORV_FLAG_UI_RESTRICTED) != 0;
    showUnprotect = true;
}

STDMETHODIMP
OrvaneCtxMenu::QueryContextMenu(HMENU menu, UINT indexMenu, UINT idCmdFirst, UINT /*idCmdLast*/,
                                UINT flags) noexcept {
    const bool nothing_selected = folderPath.empty() && !trackedFileMode;
    if (nothing_selected || restricted || (flags & silent_flags) != 0) {
        return 0;
    }
    const bool active = drvport::state() != 0;
    return trackedFileMode ? insert_tracked_item(menu, indexMenu, idCmdFirst, active)
                           : insert_folder_items(menu, indexMenu, idCmdFirst, active);
}

HRESULT OrvaneCtxMenu::insert_tracked_item(HMENU menu, UINT indexMenu, UINT idCmdFirst, bool active) const {
    // The popup flag beside a command number in place of a submenu is kept on purpose.
    const UINT grey = active ? 0 : MF_GRAYED;
    if (InsertMenuW(menu, indexMenu, grey | MF_BYPOSITION | MF_POPUP, idCmdFirst, trackedItemText.c_str()) !=
        FALSE) {
        // Only then: otherwise the item at that position is the host's, and lives longer than the bitmap.
        SetMenuItemBitmaps(menu, indexMenu, MF_BYPOSITION, menuBitmap.get(), menuBitmap.get());
    }
    return 1;
}

HRESULT OrvaneCtxMenu::insert_folder_items(HMENU menu, UINT indexMenu, UINT idCmdFirst, bool active) const {
    auto submenu = make_folder_submenu({.texts = itemTexts,
                                        .is_protected = protectedFolder,
                                        .driver_is_active = active,
                                        .shows_unprotect = showUnprotect,
                                        .shows_exports = exportsAvailable},
                                       idCmdFirst);
    if (!submenu.menu) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    if (InsertMenuW(menu, indexMenu, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(submenu.menu.get()),
                    submenu_text) == FALSE) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    (void)submenu.menu.release();  // now part of the host's menu
    SetMenuItemBitmaps(menu, indexMenu, MF_BYPOSITION, menuBitmap.get(), menuBitmap.get());
    return MAKE_HRESULT(SEVERITY_SUCCESS, 0, submenu.item_count + 1);
}

STDMETHODIMP
OrvaneCtxMenu::GetCommandString(UINT_PTR idCmd, UINT type, UINT* /*reserved*/, LPSTR buffer,
                                UINT cch) noexcept {
    if ((type & any_text_bits) == 0) {
        return E_INVALIDARG;
    }
    const UINT_PTR commands = trackedFileMode ? 1 : command_count;
    if (idCmd >= commands || (type & wide_text_bit) == 0) {
        return E_INVALIDARG;
    }
    copy_bounded(trackedFileMode ? trackedItemText : itemTexts[idCmd], buffer, cch);
    return S_OK;
}

}  // namespace ov::shell
