#include "companions/devservice/store/vault.h"

#include "companions/devservice/files/path.h"
#include "ovufc/win/handle.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class Vault : public vault_fixture {};

TEST_F(Vault, change_that_answers_an_error_changes_nothing) {
    const std::uint64_t revision = store.state().revision;
    EXPECT_EQ(store.change([](service_state& state) -> DWORD {
        state.managed.push_back(L"D:\\x");
        return ERROR_NOT_FOUND;
    }),
              DWORD{ERROR_NOT_FOUND});
    EXPECT_TRUE(store.state().managed.empty());
    ASSERT_EQ(store.reload(), 0u);
    EXPECT_TRUE(store.state().managed.empty());
    EXPECT_EQ(store.state().revision, revision);
}

TEST_F(Vault, changes_of_two_writers_are_all_kept) {
    constexpr int changes_each = 25;
    struct writer {
        std::wstring folder;
        static DWORD WINAPI run(void* self) {
            vault own(static_cast<writer*>(self)->folder);
            DWORD failures = 0;
            for (int count = 0; count < changes_each; ++count) {
                failures += own.change([](service_state& state) -> DWORD {
                    state.managed.push_back(L"D:\\x");
                    return ERROR_SUCCESS;
                }) == ERROR_SUCCESS
                                ? 0
                                : 1;
            }
            return failures;
        }
    } other{store.folder()};
    const win::unique_kernel_handle thread(CreateThread(nullptr, 0, writer::run, &other, 0, nullptr));
    EXPECT_EQ(writer::run(&other), 0u);
    WaitForSingleObject(thread.get(), INFINITE);
    DWORD failures = 1;
    GetExitCodeThread(thread.get(), &failures);
    EXPECT_EQ(failures, 0u);
    ASSERT_EQ(store.reload(), 0u);
    EXPECT_EQ(store.state().managed.size(), std::size_t{2} * changes_each);
}

}  // namespace
}  // namespace ov::devservice
