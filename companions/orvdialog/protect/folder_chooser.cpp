#include "companions/orvdialog/protect/folder_chooser.h"

#include <shlobj.h>
#include <wrl/client.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "ovufc/com/task_memory.h"
#include "ovufc/noncopyable.h"

namespace ov::dialog {

namespace {

using Microsoft::WRL::ComPtr;

/// COM for the length of a scope; a host thread that has it already keeps what it has.
class com_apartment : private noncopyable {
  public:
    com_apartment() noexcept : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~com_apartment() {
        if (SUCCEEDED(result_)) {
            CoUninitialize();
        }
    }

  private:
    HRESULT result_;
};

std::wstring path_of(IShellItem& item) {
    wchar_t* path = nullptr;
    if (FAILED(item.GetDisplayName(SIGDN_FILESYSPATH, &path))) {
        return {};
    }
    const com::unique_task_text owned(path);
    return path;
}

/// What the system's dialog may need of the thread's stack; it would end the process where it finds less.
constexpr std::size_t chooser_stack_bytes = std::size_t{192} * 1024;

std::size_t stack_left_bytes() noexcept {
    // VirtualQuery, as what tells it directly came with Windows 8.
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(&region, &region, sizeof region);
    return reinterpret_cast<std::uintptr_t>(&region) -
           reinterpret_cast<std::uintptr_t>(region.AllocationBase);
}

}  // namespace

std::optional<std::wstring> choose_folder(HWND owner, const std::wstring& title,
                                          const std::wstring& start_path) {
    if (stack_left_bytes() < chooser_stack_bytes) {
        return std::nullopt;
    }
    const com_apartment apartment;
    ComPtr<IFileDialog> dialog;
    if (FAILED(
            CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&dialog)))) {
        return std::nullopt;
    }
    FILEOPENDIALOGOPTIONS options = 0;
    dialog->GetOptions(&options);
    dialog->SetOptions(options | FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_PATHMUSTEXIST);
    dialog->SetTitle(title.c_str());
    ComPtr<IShellItem> start;
    if (SUCCEEDED(SHCreateItemFromParsingName(start_path.c_str(), nullptr, IID_PPV_ARGS(&start)))) {
        dialog->SetFolder(start.Get());
    }
    const HRESULT shown = dialog->Show(owner);
    if (FAILED(shown)) {
        return shown == HRESULT_FROM_WIN32(ERROR_CANCELLED) ? std::optional(std::wstring()) : std::nullopt;
    }
    ComPtr<IShellItem> chosen;
    return SUCCEEDED(dialog->GetResult(&chosen)) && chosen ? path_of(*chosen.Get()) : std::wstring();
}

}  // namespace ov::dialog
