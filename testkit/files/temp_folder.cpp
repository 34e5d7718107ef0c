#include "testkit/files/temp_folder.h"

#include <windows.h>

#include <array>
#include <atomic>

#include "ovufc/win/handle.h"
#include "testkit/require.h"

namespace ov::test {

namespace {

void remove_tree(const std::wstring& folder) {
    WIN32_FIND_DATAW entry{};
    win::unique_find search(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    for (bool more = static_cast<bool>(search); more; more = FindNextFileW(search.get(), &entry) != FALSE) {
        const std::wstring_view name = entry.cFileName;
        const std::wstring path = folder + L"\\" + entry.cFileName;
        const bool is_folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (!is_folder) {
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            DeleteFileW(path.c_str());
        } else if (name != L"." && name != L"..") {
            remove_tree(path);
        }
    }
    search.reset();
    RemoveDirectoryW(folder.c_str());
}

std::wstring unused_name() {
    static std::atomic<unsigned> made{0};
    return L"orv_" + std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(++made);
}

}  // namespace

temp_folder::temp_folder() {
    std::array<wchar_t, MAX_PATH + 1> parent{};
    require(GetTempPathW(MAX_PATH + 1, parent.data()) != 0, "there is no temporary folder");
    path_ = parent.data() + unused_name();
    remove_tree(path_);  // left over from a process of the same id that was ended
    require(CreateDirectoryW(path_.c_str(), nullptr) != FALSE, "a folder could not be made");
}

temp_folder::~temp_folder() {
    remove_tree(path_);
}

std::wstring temp_folder::make_folder(std::wstring_view name) const {
    std::wstring path = path_ + L"\\" + std::wstring(name);
    require(CreateDirectoryW(path.c_str(), nullptr) != FALSE, "a folder could not be made");
    return path;
}

std::wstring temp_folder::make_file(std::wstring_view name, std::string_view content) const {
    std::wstring path = path_ + L"\\" + std::wstring(name);
    const win::unique_file file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    require(static_cast<bool>(file), "a file could not be made");
    DWORD written = 0;
    require(
        WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) != FALSE,
        "a file could not be written");
    return path;
}

}  // namespace ov::test
