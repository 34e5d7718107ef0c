#include "tests/unit/module/shell_double.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace ov::test {

namespace {

// Only its address is looked at.
std::uint16_t desktop_list = 0;

std::string list_name(const void* list) {
    if (list == nullptr) {
        return "null";
    }
    return list == &desktop_list ? "desktop" : "other";
}

}  // namespace

shell_double* shell_double::current = nullptr;

shell_double::shell_double(HMODULE module, registry_watch& watch)
    : watch_(watch),
      special_folder_patch_(module, "shell32.dll", "SHGetSpecialFolderLocation", special_folder),
      change_notify_patch_(module, "shell32.dll", "SHChangeNotify", change_notify),
      task_mem_free_patch_(module, "ole32.dll", "CoTaskMemFree", task_mem_free),
      module_file_name_patch_(module, "kernel32.dll", "GetModuleFileNameW", module_file_name) {
    current = this;
}

shell_double::~shell_double() {
    current = nullptr;
}

HRESULT shell_double::special_folder(HWND owner, int folder, PIDLIST_ABSOLUTE* list) {
    current->watch_.note("SHGetSpecialFolderLocation " +
                         std::to_string(reinterpret_cast<std::uintptr_t>(owner)) + " " +
                         std::to_string(folder));
    if (SUCCEEDED(current->desktop_result)) {
        *list = reinterpret_cast<PIDLIST_ABSOLUTE>(&desktop_list);
    }
    return current->desktop_result;
}

void shell_double::change_notify(LONG event, UINT flags, LPCVOID first, LPCVOID second) {
    char text[64];
    std::snprintf(text, sizeof text, "SHChangeNotify %lX %X ", event, flags);
    current->watch_.note(text + list_name(first) + " " + list_name(second));
}

void shell_double::task_mem_free(void* memory) {
    current->watch_.note("CoTaskMemFree " + list_name(memory));
}

DWORD shell_double::module_file_name(HMODULE module, LPWSTR path, DWORD size_chars) {
    current->asked_module = module;
    current->asked_size_chars = size_chars;
    const std::wstring& given = current->module_path;
    if (given.size() < size_chars) {
        std::memcpy(path, given.c_str(), (given.size() + 1) * sizeof(wchar_t));
        return static_cast<DWORD>(given.size());
    }
    // As older systems do: filled to the brim, without a terminating zero.
    std::memcpy(path, given.c_str(), size_chars * sizeof(wchar_t));
    return size_chars;
}

}  // namespace ov::test
