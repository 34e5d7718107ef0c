#include "tests/unit/companions/devservice/copies/marking_file_system.h"

#include <winioctl.h>

#include <algorithm>

#include "companions/devservice/copies/mark.h"
#include "companions/devservice/files/path.h"

namespace ov::devservice {
namespace {

marking_file_system* standing_in = nullptr;

std::wstring key_of(std::wstring path) {
    constexpr std::wstring_view long_prefix = L"\\\\?\\";
    if (path.rfind(long_prefix, 0) == 0) {
        path.erase(0, long_prefix.size());
    }
    CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
    return path;
}

std::wstring path_of(HANDLE file) {
    std::wstring path(1024, L'\0');
    path.resize(GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0));
    return path;
}

BOOL refuse(DWORD error) noexcept {
    SetLastError(error);
    return FALSE;
}

}  // namespace

marking_file_system::marking_file_system()
    : create_file_(GetModuleHandleW(nullptr), "kernel32.dll", "CreateFileW", &create_file),
      control_(GetModuleHandleW(nullptr), "kernel32.dll", "DeviceIoControl", &control),
      attributes_(GetModuleHandleW(nullptr), "kernel32.dll", "GetFileAttributesW", &attributes),
      information_(GetModuleHandleW(nullptr), "kernel32.dll", "GetFileInformationByHandleEx", &information),
      find_first_(GetModuleHandleW(nullptr), "kernel32.dll", "FindFirstFileExW", &find_first),
      find_next_(GetModuleHandleW(nullptr), "kernel32.dll", "FindNextFileW", &find_next),
      volume_information_(GetModuleHandleW(nullptr), "kernel32.dll", "GetVolumeInformationW",
                          &volume_information) {
    standing_in = this;
}

marking_file_system::~marking_file_system() {
    standing_in = nullptr;
}

bool marking_file_system::is_marked(const std::wstring& path) const {
    return marked_.contains(key_of(path));
}

void marking_file_system::mark(const std::wstring& path) {
    marked_.insert(key_of(path));
    history_.push_back(path);
}

HANDLE WINAPI marking_file_system::create_file(LPCWSTR path, DWORD access, DWORD share,
                                               LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                                               HANDLE like) {
    const marking_file_system& self = *standing_in;
    const std::wstring key = key_of(path);
    const bool known =
        self.has_filter && std::none_of(self.unknown_to_filter.begin(), self.unknown_to_filter.end(),
                                        [&](const auto& name) { return key_of(name) == key; });
    if ((flags & FILE_FLAG_OPEN_REPARSE_POINT) == 0 && self.marked_.contains(key) && !known) {
        SetLastError(ERROR_CANT_ACCESS_FILE);
        return INVALID_HANDLE_VALUE;
    }
    return self.create_file_.original()(path, access, share, security, disposition, flags, like);
}

BOOL WINAPI marking_file_system::control(HANDLE file, DWORD code, LPVOID in, DWORD in_bytes, LPVOID out,
                                         DWORD out_bytes, LPDWORD bytes, LPOVERLAPPED overlapped) {
    marking_file_system& self = *standing_in;
    if (code != FSCTL_SET_REPARSE_POINT && code != FSCTL_DELETE_REPARSE_POINT) {
        return self.control_.original()(file, code, in, in_bytes, out, out_bytes, bytes, overlapped);
    }
    const auto* mark = static_cast<const REPARSE_GUID_DATA_BUFFER*>(in);
    if (in_bytes != DWORD{REPARSE_GUID_DATA_BUFFER_HEADER_SIZE} + mark->ReparseDataLength ||
        mark->ReparseTag != tracked_file_tag) {
        return refuse(ERROR_INVALID_REPARSE_DATA);
    }
    const std::wstring path = path_of(file);
    if (code == FSCTL_SET_REPARSE_POINT) {
        self.mark(path);
        return TRUE;
    }
    if (self.refuses_to_unmark) {
        return refuse(ERROR_SHARING_VIOLATION);
    }
    return self.marked_.erase(key_of(path)) != 0 ? TRUE : refuse(ERROR_NOT_A_REPARSE_POINT);
}

DWORD WINAPI marking_file_system::attributes(LPCWSTR path) {
    const DWORD answer = standing_in->attributes_.original()(path);
    const bool marked = answer != INVALID_FILE_ATTRIBUTES && standing_in->is_marked(path);
    return marked ? answer | FILE_ATTRIBUTE_REPARSE_POINT : answer;
}

BOOL WINAPI marking_file_system::information(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID buffer,
                                             DWORD size_bytes) {
    const marking_file_system& self = *standing_in;
    if (!self.information_.original()(file, kind, buffer, size_bytes)) {
        return FALSE;
    }
    if (kind == FileAttributeTagInfo && self.is_marked(path_of(file))) {
        auto& answer = *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(buffer);
        answer.FileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        answer.ReparseTag = tracked_file_tag;
    }
    return TRUE;
}

void marking_file_system::show_mark(const std::wstring& folder, WIN32_FIND_DATAW& found) const {
    if (is_marked(joined(folder, found.cFileName))) {
        found.dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        found.dwReserved0 = tracked_file_tag;
    }
}

HANDLE WINAPI marking_file_system::find_first(LPCWSTR pattern, FINDEX_INFO_LEVELS level, LPVOID found,
                                              FINDEX_SEARCH_OPS search, LPVOID filter, DWORD flags) {
    marking_file_system& self = *standing_in;
    const HANDLE find = self.find_first_.original()(pattern, level, found, search, filter, flags);
    if (find != INVALID_HANDLE_VALUE) {
        self.listed_[find] = parent_of(pattern);
        self.show_mark(self.listed_[find], *static_cast<WIN32_FIND_DATAW*>(found));
    }
    return find;
}

BOOL WINAPI marking_file_system::find_next(HANDLE find, LPWIN32_FIND_DATAW found) {
    const marking_file_system& self = *standing_in;
    if (!self.find_next_.original()(find, found)) {
        return FALSE;
    }
    self.show_mark(self.listed_.at(find), *found);
    return TRUE;
}

BOOL WINAPI marking_file_system::volume_information(LPCWSTR root, LPWSTR name, DWORD name_chars,
                                                    LPDWORD serial, LPDWORD longest_part, LPDWORD flags,
                                                    LPWSTR system, DWORD system_chars) {
    const BOOL known = standing_in->volume_information_.original()(root, name, name_chars, serial,
                                                                   longest_part, flags, system, system_chars);
    if (known && flags != nullptr) {
        *flags |= FILE_SUPPORTS_REPARSE_POINTS;
    }
    return known;
}

}  // namespace ov::devservice
