#include "companions/orvdialog/folder_chooser.h"

#include <shlobj.h>
#include <wrl/client.h>

#include <memory>

namespace ov::dialog {

namespace {

using Microsoft::WRL::ComPtr;

/// COM for the length of a scope; a host thread that has it already keeps what it has.
class com_apartment {
  public:
    com_apartment() noexcept : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    com_apartment(const com_apartment&) = delete;
    com_apartment& operator=(const com_apartment&) = delete;
    ~com_apartment() {
        if (SUCCEEDED(result_)) {
            CoUninitialize();
        }
    }

  private:
    HRESULT result_;
};

struct task_memory_deleter {
    void operator()(void* memory) const noexcept { CoTaskMemFree(memory); }
};
using task_string = std::unique_ptr<wchar_t, task_memory_deleter>;

std::wstring path_of(IShellItem& item) {
    wchar_t* path = nullptr;
    if (FAILED(item.GetDisplayName(SIGDN_FILESYSPATH, &path))) {
        return {};
    }
    const task_string owned(path);
    return path;
}

}  // namespace

std::wstring choose_folder(HWND owner, const std::wstring& start_path) {
    const com_apartment apartment;
    ComPtr<IFileDialog> dialog;
    if (FAILED(
            CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&dialog)))) {
        return {};
    }
    FILEOPENDIALOGOPTIONS options = 0;
    dialog->GetOptions(&options);
    dialog->SetOptions(options | FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_PATHMUSTEXIST);
    dialog->SetTitle(L"Orvane Vaultkeep - Choose a folder");
    ComPtr<IShellItem> start;
    if (SUCCEEDED(SHCreateItemFromParsingName(start_path.c_str(), nullptr, IID_PPV_ARGS(&start)))) {
        dialog->SetFolder(start.Get());
    }
    ComPtr<IShellItem> chosen;
    if (FAILED(dialog->Show(owner)) || FAILED(dialog->GetResult(&chosen)) || !chosen) {
        return {};
    }
    return path_of(*chosen.Get());
}

}  // namespace ov::dialog
