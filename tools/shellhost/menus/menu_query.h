#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <vector>

#include "ovufc/win/ui_handle.h"
#include "tools/shellhost/menus/menu_tree.h"
#include "tools/stand_ins/menus/menu_command.h"

namespace ov::shellhost {

/// A context menu object that has been asked for its items.
class queried_menu {
  public:
    static constexpr UINT first_id = stand_ins::first_command_id;

    queried_menu(Microsoft::WRL::ComPtr<IContextMenu> handlers, UINT flags);

    /// What the query returned.
    [[nodiscard]] HRESULT result() const noexcept { return result_; }
    [[nodiscard]] HMENU menu() const noexcept { return menu_.get(); }
    [[nodiscard]] std::vector<menu_item> items() const;
    /// Runs the command at `offset`, as a click would.
    [[nodiscard]] HRESULT invoke(UINT offset, HWND owner) const;

  private:
    Microsoft::WRL::ComPtr<IContextMenu> handlers_;
    win::unique_menu menu_;
    HRESULT result_;
};

}  // namespace ov::shellhost
