#pragma once

#include <windows.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::devservice {

/// File systems below Wine keep no reparse points of other makers. While it lives, this stands in for one
/// that does, with or without a filter that lets marked files be opened: through this program's import table,
/// for marks alone; names and contents are those of real files. One at a time.
class marking_file_system : private noncopyable {
  public:
    marking_file_system();
    ~marking_file_system();

    bool has_filter = true;  // false: a marked file opens for nobody
    std::set<std::wstring> unknown_to_filter;
    bool refuses_to_unmark = false;

    [[nodiscard]] bool is_marked(const std::wstring& path) const;
    void mark(const std::wstring& path);
    /// Every file that was ever marked, in order.
    [[nodiscard]] const std::vector<std::wstring>& history() const noexcept { return history_; }

  private:
    static HANDLE WINAPI create_file(LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE);
    static BOOL WINAPI control(HANDLE, DWORD, LPVOID, DWORD, LPVOID, DWORD, LPDWORD, LPOVERLAPPED);
    static DWORD WINAPI attributes(LPCWSTR);
    static BOOL WINAPI information(HANDLE, FILE_INFO_BY_HANDLE_CLASS, LPVOID, DWORD);
    static HANDLE WINAPI find_first(LPCWSTR, FINDEX_INFO_LEVELS, LPVOID, FINDEX_SEARCH_OPS, LPVOID, DWORD);
    static BOOL WINAPI find_next(HANDLE, LPWIN32_FIND_DATAW);
    static BOOL WINAPI volume_information(LPCWSTR, LPWSTR, DWORD, LPDWORD, LPDWORD, LPDWORD, LPWSTR, DWORD);

    void show_mark(const std::wstring& folder, WIN32_FIND_DATAW& found) const;

    std::set<std::wstring> marked_;
    std::vector<std::wstring> history_;
    std::map<HANDLE, std::wstring> listed_;  // folder of each find handle

    test::import_patch<decltype(CreateFileW)> create_file_;
    test::import_patch<decltype(DeviceIoControl)> control_;
    test::import_patch<decltype(GetFileAttributesW)> attributes_;
    test::import_patch<decltype(GetFileInformationByHandleEx)> information_;
    test::import_patch<decltype(FindFirstFileExW)> find_first_;
    test::import_patch<decltype(FindNextFileW)> find_next_;
    test::import_patch<decltype(GetVolumeInformationW)> volume_information_;
};

}  // namespace ov::devservice
