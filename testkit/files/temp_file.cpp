#include "testkit/files/temp_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "ovufc/win/handle.h"

namespace ov::test {
namespace {

win::unique_file open_for_writing(const std::wstring& path) {
    win::unique_file file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_TRUE(file) << "error " << GetLastError();
    return file;
}

}  // namespace

temp_file::temp_file(std::string_view content) {
    wchar_t folder[MAX_PATH + 1] = {};
    wchar_t name[MAX_PATH + 1] = {};
    EXPECT_NE(GetTempPathW(MAX_PATH, folder), 0u);
    EXPECT_NE(GetTempFileNameW(folder, L"orv", 0, name), 0u);
    path_ = name;
    const win::unique_file file = open_for_writing(path_);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
    EXPECT_EQ(written, content.size());
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
    EXPECT_TRUE(SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN));
    EXPECT_TRUE(SetEndOfFile(file.get()));
}

}  // namespace ov::test
