#include "installer/actions/moved_files.h"

#include <windows.h>

#include <vector>

#include "ovufc/win/handle.h"

namespace ov::setup {
namespace {

constexpr wchar_t ending[] = L".old";

std::wstring aside_name(const std::wstring& path, const std::wstring& mark) {
    return path + L"." + mark + ending;
}

bool exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

outcome move(const std::wstring& from, const std::wstring& to) {
    return MoveFileExW(from.c_str(), to.c_str(), 0) != FALSE ? outcome::done : outcome::failed;
}

std::vector<std::wstring> old_ones_of(const std::wstring& path) {
    std::vector<std::wstring> found;
    WIN32_FIND_DATAW data;
    const win::unique_find search(FindFirstFileW((path + L".*" + ending).c_str(), &data));
    if (!search) {
        return found;
    }
    const std::wstring folder = path.substr(0, path.rfind(L'\\') + 1);
    do {
        found.push_back(folder + data.cFileName);
    } while (FindNextFileW(search.get(), &data) != FALSE);
    return found;
}

}  // namespace

outcome move_aside(const std::wstring& path, const std::wstring& mark) {
    return exists(path) ? move(path, aside_name(path, mark)) : outcome::nothing_to_do;
}

outcome put_back(const std::wstring& path, const std::wstring& mark) {
    const std::wstring aside = aside_name(path, mark);
    return exists(aside) && !exists(path) ? move(aside, path) : outcome::nothing_to_do;
}

outcome delete_old(const std::wstring& path) {
    outcome result = outcome::nothing_to_do;
    for (const std::wstring& old : old_ones_of(path)) {
        if (DeleteFileW(old.c_str()) != FALSE) {
            result = result == outcome::failed ? result : outcome::done;
        } else {
            MoveFileExW(old.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
            result = outcome::failed;
        }
    }
    return result;
}

bool is_old_one_left(const std::wstring& path) {
    return !old_ones_of(path).empty();
}

outcome remove_folder(const std::wstring& folder, bool later) {
    if (!exists(folder)) {
        return outcome::nothing_to_do;
    }
    if (RemoveDirectoryW(folder.c_str()) != FALSE) {
        return outcome::done;
    }
    if (later) {
        MoveFileExW(folder.c_str(), nullptr, MOVEFILE_DELAY_UNTIL_REBOOT);
    }
    return outcome::failed;
}

}  // namespace ov::setup
