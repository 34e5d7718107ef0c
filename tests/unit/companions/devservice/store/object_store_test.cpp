#include "companions/devservice/store/object_store.h"

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

// printf abc | sha256sum
constexpr const char* digest_of_abc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

class ObjectStore : public vault_fixture {
  protected:
    [[nodiscard]] std::wstring object_of_abc() const {
        return joined(joined(root, L"objects"),
                      L"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    }

    [[nodiscard]] DWORD write_out(const std::wstring& new_file) const {
        win::unique_file to;
        const DWORD error = create_new_file(new_file, to);
        return error == ERROR_SUCCESS ? objects.write_out(stored.digest, to.get()) : error;
    }

    object_store objects{joined(root, L"objects")};
    object_store::object stored;
};

TEST_F(ObjectStore, content_put_is_named_by_its_sha_256) {
    write(user_path(L"a.txt"), "abc");
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    EXPECT_EQ(stored.digest, digest_of_abc);
    EXPECT_EQ(stored.size_bytes, 3u);
    EXPECT_TRUE(objects.contains(digest_of_abc));
}

TEST_F(ObjectStore, content_put_twice_is_kept_once) {
    write(user_path(L"a.txt"), "abc");
    write(user_path(L"b.txt"), "abc");
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    ASSERT_EQ(objects.put(user_path(L"b.txt"), stored), 0u);
    EXPECT_EQ(count_files(joined(root, L"objects")), 1u);
}

TEST_F(ObjectStore, content_written_out_is_what_was_put) {
    const std::string large(300'001, 'x');
    write(user_path(L"large"), large);
    ASSERT_EQ(objects.put(user_path(L"large"), stored), 0u);
    ASSERT_EQ(write_out(user_path(L"back")), 0u);
    EXPECT_EQ(read(user_path(L"back")), large);
}

TEST_F(ObjectStore, damaged_object_is_noticed_when_it_is_written_out) {
    write(user_path(L"a.txt"), "abc");
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    write(object_of_abc(), "abd");
    EXPECT_EQ(write_out(user_path(L"back")), DWORD{ERROR_CRC});
}

TEST_F(ObjectStore, object_of_another_size_is_written_anew) {
    write(user_path(L"a.txt"), "abc");
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    for (const char* damaged : {"", "ab", "abcd"}) {
        write(object_of_abc(), damaged);
        ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
        EXPECT_EQ(read(object_of_abc()), "abc");
    }
}

TEST_F(ObjectStore, object_with_another_content_is_written_anew_by_the_next_run) {
    write(user_path(L"a.txt"), "abc");
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    write(object_of_abc(), "abd");
    object_store next_run(joined(root, L"objects"));
    ASSERT_EQ(next_run.put(user_path(L"a.txt"), stored), 0u);
    EXPECT_EQ(read(object_of_abc()), "abc");
    EXPECT_EQ(count_files(joined(root, L"objects")), 1u);
}

TEST_F(ObjectStore, object_is_on_the_disk_before_it_has_its_name) {
    static int flushes = 0;
    static int flushes_before_the_name = 0;
    static decltype(&FlushFileBuffers) flush;
    static decltype(&MoveFileExW) move;
    const HMODULE self = GetModuleHandleW(nullptr);
    test::import_patch<decltype(FlushFileBuffers)> flush_patch(self, "kernel32.dll", "FlushFileBuffers",
                                                               [](HANDLE file) {
                                                                   ++flushes;
                                                                   return flush(file);
                                                               });
    flush = flush_patch.original();
    test::import_patch<decltype(MoveFileExW)> move_patch(self, "kernel32.dll", "MoveFileExW",
                                                         [](LPCWSTR from, LPCWSTR to, DWORD flags) {
                                                             flushes_before_the_name = flushes;
                                                             return move(from, to, flags);
                                                         });
    move = move_patch.original();
    write(user_path(L"a.txt"), "abc");
    flushes = 0;  // of the test's own file
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    EXPECT_EQ(flushes_before_the_name, 1);
}

TEST_F(ObjectStore, name_that_is_no_digest_leads_nowhere) {
    write(joined(root, L"secret"), "abc");
    EXPECT_FALSE(objects.contains("..\\secret"));
    stored.digest = "..\\secret";
    EXPECT_EQ(write_out(user_path(L"back")), DWORD{ERROR_INVALID_DATA});
}

TEST_F(ObjectStore, put_interrupted_before_leaves_nothing_in_the_way) {
    write(joined(joined(root, L"objects"), L"incoming"), "half of somethi");
    write(user_path(L"a.txt"), "abc");
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    EXPECT_EQ(count_files(joined(root, L"objects")), 1u);
}

TEST_F(ObjectStore, file_held_by_another_is_reported) {
    write(user_path(L"a.txt"), "abc");
    const win::unique_file held(CreateFileW(user_path(L"a.txt").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                            nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    EXPECT_EQ(objects.put(user_path(L"a.txt"), stored), DWORD{ERROR_SHARING_VIOLATION});
}

}  // namespace
}  // namespace ov::devservice
