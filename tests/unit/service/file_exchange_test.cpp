#include "service/file_exchange.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "ovufc/win/handle.h"
#include "testkit/files/temp_file.h"

namespace {

using ov::service::driver_file_limit_bytes;
using ov::service::read_file_text;
using ov::service::take_driver_file;
using ov::service::temp_folder;
using ov::test::temp_file;

constexpr HRESULT too_large = HRESULT_FROM_WIN32(ERROR_BUFFER_OVERFLOW);
static_assert(static_cast<std::uint32_t>(too_large) == 0x8007006F);
constexpr HRESULT is_empty = HRESULT_FROM_WIN32(ERROR_NO_DATA);
static_assert(static_cast<std::uint32_t>(is_empty) == 0x800700E8);
constexpr HRESULT not_found = static_cast<HRESULT>(0x80070002);
constexpr HRESULT sharing_violation = static_cast<HRESULT>(0x80070020);

ov::win::unique_file hold(const std::wstring& path, DWORD access, DWORD share) {
    return ov::win::unique_file(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST(ReadFileText, file_gives_all_its_bytes) {
    const temp_file file("{\"a\":\"\xC3\xA9\"}\r\n");
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "{\"a\":\"\xC3\xA9\"}\r\n");
    EXPECT_TRUE(file.exists());
}

TEST(ReadFileText, file_with_a_nul_ends_there) {
    const temp_file file(std::string_view("ab\0cd", 5));
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "ab");
}

TEST(ReadFileText, file_that_begins_with_a_nul_is_an_empty_text) {
    const temp_file file(std::string_view("\0cd", 3));
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "");
}

TEST(ReadFileText, empty_file_is_an_error) {
    const temp_file file("");
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), is_empty);
    EXPECT_EQ(text, "before");
}

TEST(ReadFileText, file_of_the_largest_size_is_read) {
    const temp_file file(std::string(static_cast<std::size_t>(driver_file_limit_bytes), 'x'));
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text.size(), 0x1400000u);
    EXPECT_EQ(text.find_first_not_of('x'), std::string::npos);
}

TEST(ReadFileText, file_of_one_byte_more_is_an_error) {
    const temp_file file("x");
    file.resize(driver_file_limit_bytes + 1);
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), too_large);
    EXPECT_EQ(text, "before");
}

TEST(ReadFileText, file_whose_size_has_a_high_word_is_an_error) {
    const temp_file file("x");
    file.resize(0x100000005);
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), too_large);
}

TEST(ReadFileText, missing_file_gives_the_windows_error) {
    std::string text = "before";
    EXPECT_EQ(read_file_text(temp_folder() + L"no such file.orv", text), not_found);
    EXPECT_EQ(text, "before");
}

TEST(ReadFileText, folder_gives_a_windows_error) {
    std::string text;
    EXPECT_TRUE(FAILED(read_file_text(temp_folder(), text)));
}

TEST(ReadFileText, file_that_its_writer_still_holds_is_read) {
    const temp_file file("abc");
    const auto writer = hold(file.path(), GENERIC_READ | GENERIC_WRITE | DELETE,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    ASSERT_TRUE(writer);
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "abc");
}

TEST(ReadFileText, file_that_nobody_may_read_gives_the_windows_error) {
    const temp_file file("abc");
    const auto writer = hold(file.path(), GENERIC_WRITE, FILE_SHARE_DELETE);
    ASSERT_TRUE(writer);
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), sharing_violation);
}

TEST(ReadFileText, when_done_has_closed_the_file) {
    const temp_file file("abc");
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_TRUE(hold(file.path(), GENERIC_READ | GENERIC_WRITE, 0)) << "error " << GetLastError();
}

TEST(ReadFileText, when_it_failed_has_closed_the_file) {
    const temp_file file("");
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), is_empty);
    EXPECT_TRUE(hold(file.path(), GENERIC_READ | GENERIC_WRITE, 0)) << "error " << GetLastError();
}

TEST(TakeDriverFile, file_gives_its_text_and_deletes_it) {
    const temp_file file("abc");
    EXPECT_EQ(take_driver_file(file.path()), "abc");
    EXPECT_FALSE(file.exists());
}

TEST(TakeDriverFile, file_that_cannot_be_used_is_deleted_all_the_same) {
    const temp_file empty("");
    EXPECT_EQ(take_driver_file(empty.path()), "");
    EXPECT_FALSE(empty.exists());

    const temp_file large("x");
    large.resize(driver_file_limit_bytes + 1);
    EXPECT_EQ(take_driver_file(large.path()), "");
    EXPECT_FALSE(large.exists());
}

TEST(TakeDriverFile, file_that_nobody_may_read_is_deleted_when_let_go) {
    const temp_file file("abc");
    auto writer = hold(file.path(), GENERIC_WRITE, FILE_SHARE_DELETE);
    ASSERT_TRUE(writer);
    EXPECT_EQ(take_driver_file(file.path()), "");
    writer.reset();
    EXPECT_FALSE(file.exists());
}

TEST(TakeDriverFile, missing_file_is_empty) {
    EXPECT_EQ(take_driver_file(temp_folder() + L"no such file.orv"), "");
}

TEST(TempFolder, users_own_ends_in_a_backslash_and_is_there) {
    const std::wstring folder = temp_folder();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.back(), L'\\');
    EXPECT_NE(GetFileAttributesW(folder.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(TempFolder, name_that_does_not_fit_is_empty) {
    const std::wstring before = temp_folder();
    ASSERT_TRUE(SetEnvironmentVariableW(L"TMP", (L"C:\\" + std::wstring(400, L'x')).c_str()));
    EXPECT_EQ(temp_folder(), L"");
    ASSERT_TRUE(SetEnvironmentVariableW(L"TMP", before.c_str()));
}

}  // namespace
