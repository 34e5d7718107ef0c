#include "companions/devservice/copies/mark.h"

#include <winioctl.h>

#include <optional>

#include "companions/devservice/files/path.h"
#include "ovufc/win/handle.h"

namespace ov::devservice {
namespace {

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD tried_bytes = 4096;
constexpr GUID maker = {0x6b1f3c52, 0x0d4e, 0x4c8a, {0x9a, 0x37, 0x5e, 0x21, 0xc4, 0x80, 0xf9, 0x16}};

DWORD control(HANDLE file, DWORD code) noexcept {
    REPARSE_GUID_DATA_BUFFER mark{};
    mark.ReparseTag = tracked_file_tag;
    mark.ReparseGuid = maker;
    DWORD bytes = 0;
    return DeviceIoControl(file, code, &mark, REPARSE_GUID_DATA_BUFFER_HEADER_SIZE, nullptr, 0, &bytes,
                           nullptr)
               ? ERROR_SUCCESS
               : GetLastError();
}

win::unique_file open_itself(const std::wstring& path, DWORD access) {
    return win::unique_file(CreateFileW(long_form(path).c_str(), access, share_all, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

win::unique_file open_as_others_do(const std::wstring& path) {
    return win::unique_file(
        CreateFileW(long_form(path).c_str(), GENERIC_READ, share_all, nullptr, OPEN_EXISTING, 0, nullptr));
}

std::optional<std::string> beginning(HANDLE file) {
    std::string bytes(tried_bytes, '\0');
    OVERLAPPED from_the_start{};
    DWORD read_bytes = 0;
    if (!ReadFile(file, bytes.data(), tried_bytes, &read_bytes, &from_the_start) &&
        GetLastError() != ERROR_HANDLE_EOF) {
        return std::nullopt;
    }
    bytes.resize(read_bytes);
    return bytes;
}

}  // namespace

bool is_marked(const std::wstring& path) {
    WIN32_FIND_DATAW found{};
    const win::unique_find find(FindFirstFileExW(long_form(path).c_str(), FindExInfoBasic, &found,
                                                 FindExSearchNameMatch, nullptr, 0));
    return find && is_marked_file(found.dwFileAttributes, found.dwReserved0);
}

DWORD set_mark(HANDLE file, const std::wstring& path) {
    const std::optional<std::string> before = beginning(file);
    if (!before) {
        return GetLastError();
    }
    if (const DWORD error = control(file, FSCTL_SET_REPARSE_POINT); error != ERROR_SUCCESS) {
        return error;
    }
    if (const win::unique_file opened = open_as_others_do(path);
        opened && beginning(opened.get()) == before) {
        return ERROR_SUCCESS;
    }
    const DWORD error = control(file, FSCTL_DELETE_REPARSE_POINT);
    return error == ERROR_SUCCESS ? ERROR_CANT_ACCESS_FILE : error;
}

DWORD mark_file(const std::wstring& path) {
    const win::unique_file file = open_itself(path, GENERIC_READ | FILE_WRITE_ATTRIBUTES);
    return file ? set_mark(file.get(), path) : GetLastError();
}

DWORD unmark_file(const std::wstring& path) {
    const win::unique_file file = open_itself(path, FILE_WRITE_ATTRIBUTES);
    return file ? control(file.get(), FSCTL_DELETE_REPARSE_POINT) : GetLastError();
}

bool opens_for_others(const std::wstring& path) {
    if (open_as_others_do(path)) {
        return true;
    }
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
}

}  // namespace ov::devservice
