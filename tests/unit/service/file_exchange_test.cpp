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

TEST(ReadFileText, file_givesAllItsBytes) {
    const temp_file file("{\"a\":\"\xC3\xA9\"}\r\n");
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "{\"a\":\"\xC3\xA9\"}\r\n");
    EXPECT_TRUE(file.exists());
}

TEST(ReadFileText, fileWithANul_endsThere) {
    const temp_file file(std::string_view("ab\0cd", 5));
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "ab");
}

TEST(ReadFileText, fileThatBeginsWithANul_isAnEmptyText) {
    const temp_file file(std::string_view("\0cd", 3));
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "");
}

TEST(ReadFileText, emptyFile_isAnError) {
    const temp_file file("");
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), is_empty);
    EXPECT_EQ(text, "before");
}

TEST(ReadFileText, fileOfTheLargestSize_isRead) {
    const temp_file file(std::string(static_cast<std::size_t>(driver_file_limit_bytes), 'x'));
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text.size(), 0x1400000u);
    EXPECT_EQ(text.find_first_not_of('x'), std::string::npos);
}

TEST(ReadFileText, fileOfOneByteMore_isAnError) {
    const temp_file file("x");
    file.resize(driver_file_limit_bytes + 1);
    std::string text = "before";
    EXPECT_EQ(read_file_text(file.path(), text), too_large);
    EXPECT_EQ(text, "before");
}

TEST(ReadFileText, fileWhoseSizeHasAHighWord_isAnError) {
    const temp_file file("x");
    file.resize(0x100000005);
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), too_large);
}

TEST(ReadFileText, missingFile_givesTheWindowsError) {
    std::string text = "before";
    EXPECT_EQ(read_file_text(temp_folder() + L"no such file.orv", text), not_found);
    EXPECT_EQ(text, "before");
}

TEST(ReadFileText, folder_givesAWindowsError) {
    std::string text;
    EXPECT_TRUE(FAILED(read_file_text(temp_folder(), text)));
}

TEST(ReadFileText, fileThatItsWriterStillHolds_isRead) {
    const temp_file file("abc");
    const auto writer = hold(file.path(), GENERIC_READ | GENERIC_WRITE | DELETE,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    ASSERT_TRUE(writer);
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_EQ(text, "abc");
}

TEST(ReadFileText, fileThatNobodyMayRead_givesTheWindowsError) {
    const temp_file file("abc");
    const auto writer = hold(file.path(), GENERIC_WRITE, FILE_SHARE_DELETE);
    ASSERT_TRUE(writer);
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), sharing_violation);
}

TEST(ReadFileText, whenDone_hasClosedTheFile) {
    const temp_file file("abc");
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), S_OK);
    EXPECT_TRUE(hold(file.path(), GENERIC_READ | GENERIC_WRITE, 0)) << "error " << GetLastError();
}

TEST(ReadFileText, whenItFailed_hasClosedTheFile) {
    const temp_file file("");
    std::string text;
    EXPECT_EQ(read_file_text(file.path(), text), is_empty);
    EXPECT_TRUE(hold(file.path(), GENERIC_READ | GENERIC_WRITE, 0)) << "error " << GetLastError();
}

TEST(TakeDriverFile, file_givesItsTextAndDeletesIt) {
    const temp_file file("abc");
    EXPECT_EQ(take_driver_file(file.path()), "abc");
    EXPECT_FALSE(file.exists());
}

TEST(TakeDriverFile, fileThatCannotBeUsed_isDeletedAllTheSame) {
    const temp_file empty("");
    EXPECT_EQ(take_driver_file(empty.path()), "");
    EXPECT_FALSE(empty.exists());

    const temp_file large("x");
    large.resize(driver_file_limit_bytes + 1);
    EXPECT_EQ(take_driver_file(large.path()), "");
    EXPECT_FALSE(large.exists());
}

TEST(TakeDriverFile, fileThatNobodyMayRead_isDeletedWhenLetGo) {
    const temp_file file("abc");
    auto writer = hold(file.path(), GENERIC_WRITE, FILE_SHARE_DELETE);
    ASSERT_TRUE(writer);
    EXPECT_EQ(take_driver_file(file.path()), "");
    writer.reset();
    EXPECT_FALSE(file.exists());
}

TEST(TakeDriverFile, missingFile_isEmpty) {
    EXPECT_EQ(take_driver_file(temp_folder() + L"no such file.orv"), "");
}

TEST(TempFolder, usersOwn_endsInABackslashAndIsThere) {
    const std::wstring folder = temp_folder();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.back(), L'\\');
    EXPECT_NE(GetFileAttributesW(folder.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(TempFolder, nameThatDoesNotFit_isEmpty) {
    const std::wstring before = temp_folder();
    ASSERT_TRUE(SetEnvironmentVariableW(L"TMP", (L"C:\\" + std::wstring(400, L'x')).c_str()));
    EXPECT_EQ(temp_folder(), L"");
    ASSERT_TRUE(SetEnvironmentVariableW(L"TMP", before.c_str()));
}

}  // namespace
