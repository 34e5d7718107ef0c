#include "installer/actions/moved_files.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "ovufc/win/handle.h"
#include "testkit/files/temp_folder.h"
#include "testkit/process/child_process.h"
#include "tests/unit/installer/pending_deletions.h"

namespace ov::setup {
namespace {

constexpr wchar_t this_run[] = L"2";
constexpr wchar_t earlier_run[] = L"1";

bool exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string content_of(const std::wstring& path) {
    const win::unique_file file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    char text[64] = {};
    DWORD read_bytes = 0;
    return file && ReadFile(file.get(), text, sizeof(text), &read_bytes, nullptr) != FALSE
               ? std::string(text, read_bytes)
               : "no file";
}

/// A library as a host holds it: this very program, under another name.
class loaded_library {
  public:
    explicit loaded_library(std::wstring path) : path_(std::move(path)) {
        CopyFileW(test::this_program().c_str(), path_.c_str(), FALSE);
        library_.reset(LoadLibraryExW(path_.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES));
        EXPECT_TRUE(library_);
    }
    [[nodiscard]] const std::wstring& path() const { return path_; }

  private:
    std::wstring path_;
    win::unique_library library_;
};

/// Somebody's file that may be read, but neither renamed nor deleted.
win::unique_file held(const std::wstring& path) {
    return win::unique_file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
}

class MovedFiles : public testing::Test {
  protected:
    test::temp_folder folder;
    std::wstring library = folder.path() + L"\\a.dll";
    std::wstring aside = library + L".2.old";
    std::wstring aside_earlier = library + L".1.old";
};

TEST_F(MovedFiles, move_aside_renames_the_file) {
    folder.make_file(L"a.dll", "former");
    EXPECT_EQ(move_aside(library, this_run), outcome::done);
    EXPECT_FALSE(exists(library));
    EXPECT_EQ(content_of(aside), "former");
}

TEST_F(MovedFiles, move_aside_renames_a_loaded_library) {
    const loaded_library loaded(library);
    EXPECT_EQ(move_aside(library, this_run), outcome::done);
    EXPECT_FALSE(exists(library));
    EXPECT_TRUE(exists(aside));
}

TEST_F(MovedFiles, move_aside_without_a_file_has_nothing_to_do) {
    EXPECT_EQ(move_aside(library, this_run), outcome::nothing_to_do);
    EXPECT_FALSE(exists(aside));
}

TEST_F(MovedFiles, move_aside_of_a_file_that_may_not_be_renamed_fails_and_leaves_it) {
    folder.make_file(L"a.dll", "former");
    const win::unique_file holder = held(library);
    EXPECT_EQ(move_aside(library, this_run), outcome::failed);
    EXPECT_EQ(content_of(library), "former");
}

TEST_F(MovedFiles, put_back_gives_the_file_its_name_again) {
    folder.make_file(L"a.dll.2.old", "former");
    EXPECT_EQ(put_back(library, this_run), outcome::done);
    EXPECT_EQ(content_of(library), "former");
    EXPECT_FALSE(exists(aside));
}

TEST_F(MovedFiles, put_back_leaves_a_new_file_alone) {
    folder.make_file(L"a.dll", "new");
    folder.make_file(L"a.dll.2.old", "former");
    EXPECT_EQ(put_back(library, this_run), outcome::nothing_to_do);
    EXPECT_EQ(content_of(library), "new");
    EXPECT_EQ(content_of(aside), "former");
}

TEST_F(MovedFiles, put_back_knows_the_files_of_its_own_run_alone) {
    folder.make_file(L"a.dll.1.old", "of an earlier run");
    EXPECT_EQ(put_back(library, this_run), outcome::nothing_to_do);
    EXPECT_FALSE(exists(library));
    EXPECT_EQ(put_back(library, earlier_run), outcome::done);
    EXPECT_EQ(content_of(library), "of an earlier run");
}

TEST_F(MovedFiles, delete_old_deletes_those_of_every_run_and_no_other_file) {
    folder.make_file(L"a.dll", "new");
    folder.make_file(L"a.dll.1.old");
    folder.make_file(L"a.dll.2.old");
    const std::wstring stranger = folder.make_file(L"b.dll.2.old");
    const std::wstring another_stranger = folder.make_file(L"a.dll.2.older");
    EXPECT_TRUE(is_old_one_left(library));
    EXPECT_EQ(delete_old(library), outcome::done);
    EXPECT_FALSE(is_old_one_left(library));
    EXPECT_FALSE(exists(aside));
    EXPECT_FALSE(exists(aside_earlier));
    EXPECT_EQ(content_of(library), "new");
    EXPECT_TRUE(exists(stranger));
    EXPECT_TRUE(exists(another_stranger));
}

TEST_F(MovedFiles, delete_old_without_any_has_nothing_to_do) {
    folder.make_file(L"a.dll", "new");
    EXPECT_FALSE(is_old_one_left(library));
    EXPECT_EQ(delete_old(library), outcome::nothing_to_do);
    EXPECT_EQ(content_of(library), "new");
}

TEST_F(MovedFiles, delete_old_leaves_what_is_loaded_to_the_next_start_and_deletes_the_rest) {
    const test::pending_deletions pending;
    folder.make_file(L"a.dll.1.old");
    {
        const loaded_library loaded(library);
        ASSERT_EQ(move_aside(library, this_run), outcome::done);
        EXPECT_EQ(delete_old(library), outcome::failed);
        EXPECT_TRUE(is_old_one_left(library));
        EXPECT_TRUE(exists(aside));
        EXPECT_FALSE(exists(aside_earlier));
        EXPECT_TRUE(pending.contain(aside));
        EXPECT_FALSE(pending.contain(aside_earlier));
    }
    EXPECT_EQ(delete_old(library), outcome::done);
}

TEST_F(MovedFiles, remove_folder_removes_an_empty_one) {
    const std::wstring empty = folder.make_folder(L"empty");
    EXPECT_EQ(remove_folder(empty, false), outcome::done);
    EXPECT_FALSE(exists(empty));
    EXPECT_EQ(remove_folder(empty, false), outcome::nothing_to_do);
}

TEST_F(MovedFiles, remove_folder_leaves_one_that_is_not_empty) {
    const test::pending_deletions pending;
    const std::wstring full = folder.make_folder(L"full");
    folder.make_file(L"full\\file", "somebody's");
    EXPECT_EQ(remove_folder(full, false), outcome::failed);
    EXPECT_FALSE(pending.contain(full));
    EXPECT_EQ(remove_folder(full, true), outcome::failed);
    EXPECT_TRUE(pending.contain(full));
    EXPECT_EQ(content_of(full + L"\\file"), "somebody's");
}

}  // namespace
}  // namespace ov::setup
