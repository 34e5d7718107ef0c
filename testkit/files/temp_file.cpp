#include "testkit/files/temp_file.h"

#include <windows.h>

#include "ovufc/win/handle.h"
#include "testkit/require.h"

namespace ov::test {
namespace {

win::unique_file open_for_writing(const std::wstring& path) {
    win::unique_file file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    require(static_cast<bool>(file), "a file could not be opened");
    return file;
}

}  // namespace

temp_file::temp_file(std::string_view content) {
    wchar_t folder[MAX_PATH + 1] = {};
    wchar_t name[MAX_PATH + 1] = {};
    require(GetTempPathW(MAX_PATH, folder) != 0 && GetTempFileNameW(folder, L"orv", 0, name) != 0,
            "a file could not be made");
    path_ = name;
    const win::unique_file file = open_for_writing(path_);
    DWORD written = 0;
    require(WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) &&
                written == content.size(),
            "a file could not be written");
}

temp_file::~temp_file() {
    DeleteFileW(path_.c_str());
}

bool temp_file::exists() const noexcept {
    return GetFileAttributesW(path_.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void temp_file::resize(std::int64_t size_bytes) const {
    const win::unique_file file = open_for_writing(path_);
    LARGE_INTEGER size{};
    size.QuadPart = size_bytes;
    require(SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN) && SetEndOfFile(file.get()),
            "a file could not be resized");
}

}  // namespace ov::test
