#include "companions/devservice/serving/presence.h"

#include "companions/devservice/command_line/remote.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/store/state_lock.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class Presence : public vault_fixture {
  protected:
    std::wstring folder = joined(root, L"state");
};

TEST_F(Presence, no_service_runs_until_one_is_there_and_after_it_is_gone) {
    const remote command(folder);
    EXPECT_EQ(command.process_id(), 0u);
    {
        const presence service(folder);
        EXPECT_EQ(service.error(), 0u);
        EXPECT_EQ(command.process_id(), GetCurrentProcessId());
        EXPECT_EQ(remote(joined(root, L"other")).process_id(), 0u);
    }
    EXPECT_EQ(command.process_id(), 0u);
    EXPECT_TRUE(command.tell(5));
    EXPECT_TRUE(command.stop());
}

TEST_F(Presence, second_service_on_a_folder_is_refused) {
    const presence service(folder);
    std::wstring upper = folder;
    CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    EXPECT_EQ(presence(upper).error(), DWORD{ERROR_SERVICE_ALREADY_RUNNING});
}

TEST_F(Presence, telling_waits_until_the_revision_is_served) {
    presence service(folder);
    service.publish(3);
    EXPECT_TRUE(remote(folder).tell(3));
    EXPECT_EQ(WaitForSingleObject(service.wake_event(), 0), DWORD{WAIT_TIMEOUT});
    struct serving {
        presence& service;
        static DWORD WINAPI run(void* self) {
            presence& service = static_cast<serving*>(self)->service;
            const DWORD signalled = WaitForSingleObject(service.wake_event(), 5'000);
            service.publish(4);
            return signalled;
        }
    } serve{service};
    const win::unique_kernel_handle thread(CreateThread(nullptr, 0, serving::run, &serve, 0, nullptr));
    EXPECT_TRUE(remote(folder).tell(4));
    WaitForSingleObject(thread.get(), INFINITE);
    DWORD signalled = 1;
    GetExitCodeThread(thread.get(), &signalled);
    EXPECT_EQ(signalled, DWORD{WAIT_OBJECT_0});
}

TEST_F(Presence, state_lock_is_given_up_by_its_holder) {
    { EXPECT_TRUE(state_lock(folder).held()); }
    EXPECT_TRUE(state_lock(folder).held());
}

}  // namespace
}  // namespace ov::devservice
