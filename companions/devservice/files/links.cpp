#include "companions/devservice/files/links.h"

#include "companions/devservice/copies/mark.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"

namespace ov::devservice {
namespace {

bool has_link_attribute(const std::wstring& path) {
    const DWORD attributes = attributes_of(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           !is_marked(path);
}

/// What stands at `path` opened as itself; nothing is read.
win::unique_file open_itself(const std::wstring& path) {
    return win::unique_file(CreateFileW(
        long_form(path).c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

/// Empty when the system gives none.
std::wstring final_name(HANDLE file) {
    std::wstring name(MAX_PATH, L'\0');
    DWORD length_chars = GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), 0);
    if (length_chars > name.size()) {
        name.resize(length_chars);
        length_chars = GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), 0);
    }
    name.resize(length_chars < name.size() ? length_chars : 0);
    return name;
}

}  // namespace

bool reached_elsewhere(HANDLE file, const std::wstring& path) {
    const win::unique_file parent = open_itself(parent_folder(path));
    const std::wstring name = final_name(file);
    const std::wstring name_of_parent = parent ? final_name(parent.get()) : std::wstring();
    if (name.empty() || name_of_parent.empty()) {
        return false;  // the attributes have to do
    }
    return !same_path(name, joined(name_of_parent, base_name(path)));
}

bool is_always_followed(const std::wstring& path) {
    const win::unique_file itself = open_itself(path);
    return !itself || reached_elsewhere(itself.get(), path);
}

bool is_link(const std::wstring& path) {
    if (has_link_attribute(path)) {
        return true;
    }
    const win::unique_file itself = open_itself(path);
    return itself && reached_elsewhere(itself.get(), path);
}

bool leads_through_link(const std::wstring& path) {
    std::wstring part = path;
    while (!is_volume_root(part)) {
        if (has_link_attribute(part)) {
            return true;
        }
        part = parent_folder(part);
    }
    return is_link(path);
}

}  // namespace ov::devservice
