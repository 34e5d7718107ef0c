#include "companions/devservice/files/path.h"

#include <windows.h>
#include <pathcch.h>

#include <algorithm>
#include <cwchar>

namespace ov::devservice {
namespace {

// Room for the prefix and for a name below: Windows takes 32,767 characters in all.
constexpr std::size_t path_limit_chars = 32000;
constexpr std::wstring_view long_prefix = L"\\\\?\\";
constexpr std::wstring_view long_unc_prefix = L"\\\\?\\UNC\\";

bool is_letter(wchar_t c) noexcept {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

bool begins_with_drive(std::wstring_view path) noexcept {
    return path.size() >= 3 && is_letter(path[0]) && path[1] == L':' && path[2] == L'\\';
}

bool begins_with_share(std::wstring_view path) noexcept {
    return path.size() > 2 && path[0] == L'\\' && path[1] == L'\\' && path[2] != L'.' && path[2] != L'?' &&
           path[2] != L'\\';
}

bool has_forbidden_character(std::wstring_view path) noexcept {
    return std::any_of(path.begin(), path.end(), [](wchar_t c) {
        return c < L' ' || std::wstring_view(L"<>\"|?*:/").find(c) != std::wstring_view::npos;
    });
}

int compare(std::wstring_view left, std::wstring_view right) noexcept {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE);
}

std::wstring without_prefix(std::wstring_view path) {
    std::wstring plain(path);
    std::replace(plain.begin(), plain.end(), L'/', L'\\');
    if (plain.starts_with(long_unc_prefix)) {
        return L"\\\\" + plain.substr(long_unc_prefix.size());
    }
    if (plain.starts_with(long_prefix)) {
        return plain.substr(long_prefix.size());
    }
    return plain;
}

}  // namespace

std::optional<std::wstring> clean_path(std::wstring_view path) {
    if (path.empty() || path.size() > path_limit_chars) {
        return std::nullopt;
    }
    const std::wstring plain = without_prefix(path);
    const bool drive = begins_with_drive(plain);
    if ((!drive && !begins_with_share(plain)) ||
        has_forbidden_character(std::wstring_view(plain).substr(drive ? 2 : 0))) {
        return std::nullopt;
    }
    std::wstring full(path_limit_chars + MAX_PATH, L'\0');
    const DWORD length_chars =
        GetFullPathNameW(plain.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length_chars == 0 || length_chars >= full.size()) {
        return std::nullopt;
    }
    full.resize(length_chars);
    while (full.size() > 3 && full.back() == L'\\') {
        full.pop_back();
    }
    // A name such as C:\dir\NUL becomes a device.
    if (!begins_with_drive(full) && !begins_with_share(full)) {
        return std::nullopt;
    }
    return full;
}

std::wstring long_form(const std::wstring& path) {
    if (begins_with_share(path)) {
        return std::wstring(long_unc_prefix) + path.substr(2);
    }
    return std::wstring(long_prefix) + path;
}

bool same_path(std::wstring_view left, std::wstring_view right) noexcept {
    return compare(left, right) == CSTR_EQUAL;
}

bool is_within(std::wstring_view path, std::wstring_view folder) noexcept {
    if (path.size() <= folder.size()) {
        return same_path(path, folder);
    }
    const bool at_boundary = folder.ends_with(L'\\') || path[folder.size()] == L'\\';
    return at_boundary && same_path(path.substr(0, folder.size()), folder);
}

std::wstring relative_to(std::wstring_view path, std::wstring_view folder) {
    std::wstring_view rest = path.substr(std::min(folder.size(), path.size()));
    if (rest.starts_with(L'\\')) {
        rest.remove_prefix(1);
    }
    return std::wstring(rest);
}

std::wstring joined(std::wstring_view folder, std::wstring_view relative) {
    std::wstring path(folder);
    if (!relative.empty()) {
        if (!path.empty() && !path.ends_with(L'\\')) {
            path += L'\\';
        }
        path += relative;
    }
    return path;
}

bool is_safe_relative(std::wstring_view relative) {
    if (relative.empty() || relative.size() > path_limit_chars || has_forbidden_character(relative)) {
        return false;
    }
    for (;;) {
        const std::size_t end = relative.find(L'\\');
        const std::wstring_view part = relative.substr(0, end);
        if (part.empty() || part == L"." || part == L"..") {
            return false;
        }
        if (end == std::wstring_view::npos) {
            return true;
        }
        relative.remove_prefix(end + 1);
    }
}

std::wstring base_name(std::wstring_view path) {
    const std::size_t slash = path.find_last_of(L"\\/");
    return std::wstring(slash == std::wstring_view::npos ? path : path.substr(slash + 1));
}

std::wstring parent_of(std::wstring_view path) {
    const std::size_t slash = path.find_last_of(L'\\');
    return std::wstring(slash == std::wstring_view::npos ? std::wstring_view() : path.substr(0, slash));
}

std::wstring parent_folder(std::wstring clean) {
    PathCchRemoveFileSpec(clean.data(), clean.size() + 1);
    clean.resize(std::wcslen(clean.c_str()));
    return clean;
}

bool is_volume_root(const std::wstring& clean) noexcept {
    return PathCchIsRoot(clean.c_str()) != FALSE;
}

bool path_less::operator()(std::wstring_view left, std::wstring_view right) const noexcept {
    return compare(left, right) == CSTR_LESS_THAN;
}

}  // namespace ov::devservice
