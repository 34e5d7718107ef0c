#pragma once

#include <windows.h>
#include <shlobj.h>

#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"
#include "testkit/registry/registry_watch.h"

namespace ov::test {

/// Stands in for what a registration asks of the shell and of the loader, and notes the calls of the former
/// in a registry watch, between the registry calls that come before and after.
class shell_double : private noncopyable {
  public:
    explicit shell_double(HMODULE module, registry_watch& watch);
    ~shell_double();

    /// What SHGetSpecialFolderLocation returns.
    HRESULT desktop_result = S_OK;
    /// What GetModuleFileNameW gives; empty to let it fail.
    std::wstring module_path;
    /// What it was last asked.
    HMODULE asked_module = nullptr;
    DWORD asked_size_chars = 0;

  private:
    static HRESULT WINAPI special_folder(HWND owner, int folder, PIDLIST_ABSOLUTE* list);
    static void WINAPI change_notify(LONG event, UINT flags, LPCVOID first, LPCVOID second);
    static void WINAPI task_mem_free(void* memory);
    static DWORD WINAPI module_file_name(HMODULE module, LPWSTR path, DWORD size_chars);

    static shell_double* current;

    registry_watch& watch_;
    import_patch<HRESULT WINAPI(HWND, int, PIDLIST_ABSOLUTE*)> special_folder_patch_;
    import_patch<void WINAPI(LONG, UINT, LPCVOID, LPCVOID)> change_notify_patch_;
    import_patch<void WINAPI(void*)> task_mem_free_patch_;
    import_patch<DWORD WINAPI(HMODULE, LPWSTR, DWORD)> module_file_name_patch_;
};

}  // namespace ov::test
