#include "companions/devservice/object_store.h"

#include "companions/devservice/file_io.h"
#include "companions/devservice/path.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

// printf abc | sha256sum
constexpr const char* digest_of_abc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

class ObjectStore : public vault_fixture {
  protected:
    object_store objects{joined(root, L"objects")};
    object_store::object stored;
};

TEST_F(ObjectStore, content_put_is_named_by_its_sha256) {
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
    ASSERT_EQ(objects.write_out(stored.digest, user_path(L"back")), 0u);
    EXPECT_EQ(read(user_path(L"back")), large);
}

TEST_F(ObjectStore, damaged_object_is_not_written_out) {
    write(user_path(L"a.txt"), "abc");
    ASSERT_EQ(objects.put(user_path(L"a.txt"), stored), 0u);
    write(
        joined(joined(root, L"objects"), L"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"),
        "abd");
    EXPECT_EQ(objects.write_out(stored.digest, user_path(L"back")), DWORD{ERROR_CRC});
    EXPECT_FALSE(exists(user_path(L"back")));
}

TEST_F(ObjectStore, name_that_is_no_digest_leads_nowhere) {
    write(joined(root, L"secret"), "abc");
    EXPECT_FALSE(objects.contains("..\\secret"));
    EXPECT_EQ(objects.write_out("..\\secret", user_path(L"back")), DWORD{ERROR_INVALID_DATA});
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
