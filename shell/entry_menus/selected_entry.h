#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include "ovufc/com/task_memory.h"

namespace ov::shell {

/// The entry that a command was asked for, with the references taken while looking for it: released together
/// when the command is over.
class selected_entry {
  public:
    /// False when `selection` is null or the shell cannot tell its first item and that item's name.
    [[nodiscard]] bool find(IDataObject* selection) noexcept;

  private:
    Microsoft::WRL::ComPtr<IShellItemArray> items_;
    Microsoft::WRL::ComPtr<IShellItem> item_;
    com::unique_task_text name_;
};

}  // namespace ov::shell
