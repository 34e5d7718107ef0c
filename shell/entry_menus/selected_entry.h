#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <memory>

namespace ov::shell {

/// The entry that a command was asked for, with the references taken while looking for it: released together
/// when the command is over.
class selected_entry {
  public:
    /// False when `selection` is null or the shell cannot tell its first item and that item's name.
    [[nodiscard]] bool find(IDataObject* selection) noexcept;

  private:
    struct task_memory_deleter {
        void operator()(wchar_t* text) const noexcept { CoTaskMemFree(text); }
    };
    Microsoft::WRL::ComPtr<IShellItemArray> items_;
    Microsoft::WRL::ComPtr<IShellItem> item_;
    std::unique_ptr<wchar_t, task_memory_deleter> name_;
};

}  // namespace ov::shell
