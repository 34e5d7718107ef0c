#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ovufc/win/handle.h"
#include "service/file_exchange.h"
#include "testkit/files/temp_file.h"
#include "testkit/imports/import_patch.h"

/// What the file exchange asks of the system, and what it makes of failures that no real file gives: both
/// seen through this program's import table.
namespace {

using ov::service::read_file_text;
using ov::service::take_driver_file;
using ov::service::temp_folder;
using ov::test::import_patch;
using ov::test::temp_file;

constexpr const char* kernel = "kernel32.dll";

struct file_request {
    DWORD access, share, creation, attributes;
    bool without_security, without_template;
    bool operator==(const file_request&) const = default;
};

std::vector<file_request> opened;
std::vector<DWORD> read_sizes;
std::vector<DWORD> temp_path_sizes;
std::vector<std::wstring> deleted;
DWORD size_error = 0;
DWORD read_error = 0;
std::function<void()> once_sized;
decltype(CreateFileW)* real_create = nullptr;
decltype(GetFileSizeEx)* real_size = nullptr;
decltype(ReadFile)* real_read = nullptr;
decltype(GetTempPathW)* real_temp_path = nullptr;
decltype(DeleteFileW)* real_delete = nullptr;

HANDLE WINAPI create(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD creation,
                     DWORD attributes, HANDLE template_file) {
    opened.push_back({access, share, creation, attributes, security == nullptr, template_file == nullptr});
    return real_create(path, access, share, security, creation, attributes, template_file);
}

BOOL WINAPI size(HANDLE file, LARGE_INTEGER* bytes) {
    if (size_error != 0) {
        SetLastError(size_error);
        return FALSE;
    }
    const BOOL result = real_size(file, bytes);
    if (once_sized) {
        once_sized();
    }
    return result;
}

BOOL WINAPI read(HANDLE file, void* buffer, DWORD bytes, DWORD* done, OVERLAPPED* overlapped) {
    read_sizes.push_back(bytes);
    if (read_error != 0) {
        SetLastError(read_error);
        return FALSE;
    }
    return real_read(file, buffer, bytes, done, overlapped);
}

DWORD WINAPI temp_path(DWORD chars, LPWSTR buffer) {
    temp_path_sizes.push_back(chars);
    return real_temp_path(chars, buffer);
}

BOOL WINAPI remove(LPCWSTR path) {
    deleted.emplace_back(path);
    return real_delete(path);
}

void append(const temp_file& file, const std::string& text) {
    const ov::win::unique_file writer(real_create(file.path().c_str(), FILE_APPEND_DATA, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    WriteFile(writer.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    EXPECT_EQ(written, text.size());
}

class FileExchangeRequests : public testing::Test {
  protected:
    FileExchangeRequests() {
        opened.clear();
        read_sizes.clear();
        temp_path_sizes.clear();
        deleted.clear();
        size_error = 0;
        read_error = 0;
        once_sized = nullptr;
        real_create = create_.original();
        real_size = size_.original();
        real_read = read_.original();
        real_temp_path = temp_path_.original();
        real_delete = delete_.original();
    }

  private:
    const HMODULE self = GetModuleHandleW(nullptr);
    import_patch<decltype(CreateFileW)> create_{self, kernel, "CreateFileW", create};
    import_patch<decltype(GetFileSizeEx)> size_{self, kernel, "GetFileSizeEx", size};
    import_patch<decltype(ReadFile)> read_{self, kernel, "ReadFile", read};
    import_patch<decltype(GetTempPathW)> temp_path_{self, kernel, "GetTempPathW", temp_path};
    import_patch<decltype(DeleteFileW)> delete_{self, kernel, "DeleteFileW", remove};
};

TEST_F(FileExchangeRequests, file_is_opened_shared_and_read_in_one_piece) {
    const temp_file file("abcde");
    opened.clear();
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0], (file_request{0x80100000, 7, OPEN_EXISTING, 0x08000080, true, true}));
    EXPECT_EQ(read_sizes, std::vector<DWORD>{5});
}

TEST_F(FileExchangeRequests, temp_folder_offers_room_for_260) {
    static_cast<void>(temp_folder());
    EXPECT_EQ(temp_path_sizes, std::vector<DWORD>{260});
}

TEST_F(FileExchangeRequests, failed_sizing_gives_its_error) {
    const temp_file file("abcde");
    size_error = ERROR_INVALID_FUNCTION;
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), static_cast<HRESULT>(0x80070001));
    EXPECT_EQ(text, "before");
}

TEST_F(FileExchangeRequests, failed_reading_gives_its_error_and_is_deleted_all_the_same) {
    const temp_file file("abcde");
    read_error = ERROR_LOCK_VIOLATION;
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), static_cast<HRESULT>(0x80070021));
    EXPECT_EQ(text, "before");
    EXPECT_EQ(take_driver_file(file.path()), "");
    EXPECT_EQ(deleted, std::vector<std::wstring>{file.path()});
    EXPECT_FALSE(file.exists());
}

TEST_F(FileExchangeRequests, error_that_is_negative_already_is_given_as_it_is) {
    const temp_file file("abcde");
    read_error = 0x80000005;
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), static_cast<HRESULT>(0x80000005));
}

// The driver, or anybody else who may write there, is at the file at the same moment.
TEST_F(FileExchangeRequests, file_that_grows_is_read_as_long_as_it_was) {
    const temp_file file("abcde");
    once_sized = [&] { append(file, "fgh"); };
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "abcde");
}

TEST_F(FileExchangeRequests, file_that_grows_beyond_the_limit_is_read_as_long_as_it_was) {
    const temp_file file("abcde");
    once_sized = [&] { file.resize(ov::service::driver_file_limit_bytes + 1); };
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "abcde");
}

TEST_F(FileExchangeRequests, file_that_shrinks_gives_what_is_left) {
    const temp_file file("abcde");
    once_sized = [&] { file.resize(2); };
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "ab");
}

TEST_F(FileExchangeRequests, file_that_is_deleted_once_it_is_open_is_read) {
    const temp_file file("abcde");
    once_sized = [&] { real_delete(file.path().c_str()); };
    EXPECT_EQ(take_driver_file(file.path()), "abcde");
    EXPECT_FALSE(file.exists());
}

// A reply may name anything: a pipe whose writer says nothing must not hold the shell.
TEST_F(FileExchangeRequests, pipe_that_says_nothing_is_not_waited_for) {
    const std::wstring path = LR"(\\.\pipe\orv_silent_)" + std::to_wstring(GetCurrentProcessId());
    const ov::win::unique_file pipe(
        CreateNamedPipeW(path.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 4096, 4096, 0, nullptr));
    ASSERT_TRUE(pipe);
    EXPECT_EQ(take_driver_file(path), "");
}

}  // namespace
