#include "companions/orvdialog/protect/path_problem.h"
#include "ovufc/noncopyable.h"

#include <windows.h>

#include <array>
#include <cwctype>

namespace ov::dialog {

namespace {

/// No box of the system's about a drive without a disk in it, for the length of a scope.
class quiet_disks : private noncopyable {
  public:
    quiet_disks() noexcept { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &former_); }
    ~quiet_disks() { SetThreadErrorMode(former_, nullptr); }

  private:
    DWORD former_ = 0;
};

bool begins_with_drive(const std::wstring& path) noexcept {
    return path.size() >= 3 && path[0] < 0x80 && std::iswalpha(path[0]) != 0 && path[1] == L':' &&
           path[2] == L'\\';
}

/// "\\server\share", but neither "\\?\" nor "\\.\".
bool is_on_server(const std::wstring& path) noexcept {
    return path.starts_with(L"\\\\") && !path.starts_with(L"\\\\?\\") && !path.starts_with(L"\\\\.\\");
}

bool is_on_network_drive(const std::wstring& path) noexcept {
    const std::array<wchar_t, 4> root{path[0], L':', L'\\', L'\0'};
    return GetDriveTypeW(root.data()) == DRIVE_REMOTE;
}

/// A volume may stand in a folder as well as under a letter.
bool is_volume_root(const std::wstring& path) noexcept {
    std::array<wchar_t, MAX_PATH + 2> root{};
    if (path.size() == 3) {
        return true;
    }
    if (path.size() >= MAX_PATH ||
        GetVolumePathNameW(path.c_str(), root.data(), static_cast<DWORD>(root.size())) == FALSE) {
        return false;
    }
    std::wstring_view found(root.data());
    if (found.ends_with(L'\\')) {
        found.remove_suffix(1);
    }
    return CompareStringOrdinal(path.c_str(), static_cast<int>(path.size()), found.data(),
                                static_cast<int>(found.size()), TRUE) == CSTR_EQUAL;
}

std::wstring without_surroundings(const std::wstring& text) {
    constexpr const wchar_t* around = L" \t\"";
    const auto first = text.find_first_not_of(around);
    return first == std::wstring::npos ? std::wstring()
                                       : text.substr(first, text.find_last_not_of(around) - first + 1);
}

}  // namespace

std::wstring tidy_path(const std::wstring& typed) {
    std::wstring path = without_surroundings(typed);
    for (wchar_t& character : path) {
        if (character == L'/') {
            character = L'\\';
        }
    }
    // Only a full path: any other would be taken as one below the host's current folder.
    if (begins_with_drive(path)) {
        const DWORD room_chars = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
        std::wstring full(room_chars, L'\0');
        full.resize(GetFullPathNameW(path.c_str(), room_chars, full.data(), nullptr));
        path = full.empty() ? path : full;
    }
    while (path.size() > 3 && path.back() == L'\\') {
        path.pop_back();
    }
    return path;
}

path_problem problem_of(const std::wstring& path, std::size_t limit_chars) noexcept {
    if (is_on_server(path)) {
        return path_problem::network;
    }
    if (!begins_with_drive(path)) {
        return path_problem::no_full_path;
    }
    if (is_on_network_drive(path)) {
        return path_problem::network;
    }
    if (path.size() > limit_chars) {
        return path_problem::too_long;
    }
    const quiet_disks quiet;
    if (is_volume_root(path)) {
        return path_problem::root;
    }
    return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? path_problem::gone
                                                                       : path_problem::none;
}

}  // namespace ov::dialog
