#pragma once

#include "testkit/imports/import_patch.h"
#include "tests/module/menus/menus_fixture.h"

namespace ov::test {

/// One file whose history the driver keeps. The file systems below Wine hold no reparse tags of other makers,
/// so the module's query for them is answered through its import table.
class tracked_file_fixture : public menus_fixture {
  protected:
    tracked_file_fixture();

    Microsoft::WRL::ComPtr<IContextMenu> file_menu() const { return menu_on(file_); }

    std::wstring file_;

  private:
    import_patch<decltype(GetFileInformationByHandleEx)> patch_;
};

}  // namespace ov::test
