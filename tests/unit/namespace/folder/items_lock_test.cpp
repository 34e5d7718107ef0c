// A folder's own lock: exclusive while the protected locations are added, shared for whoever reads the items,
// and never held together with the cache's.

#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "module/state/module_state.h"
#include "namespace/folder/orv_name_space.h"
#include "namespace/locations/protected_locations.h"
#include "ovufc/com/adopt.h"
#include "testkit/checks/lock_trace.h"
#include "testkit/imports/import_patch.h"
#include "testkit/imports/unpatched.h"
#include "testkit/process/module_attach.h"
#include "testkit/service/document_service.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;
using Microsoft::WRL::ComPtr;
using ov::module_state::cacheLock;
using mode = lock_trace::mode;
using holds = std::vector<lock_trace::hold>;

constexpr const char* document =
    R"({"hardDrive":{"folders":["D:\\a folder with a long name"]},"mgmtCustom":[],"oneDrive":[],"google":[],)"
    R"("boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})";

// The locks held when the system was last asked to do something within.
const lock_trace* watched = nullptr;
bool seen = false;
lock_trace::hold seen_under{};
int seen_under_several = 0;

void look() noexcept {
    if (watched == nullptr || watched->held().empty()) {
        return;
    }
    seen = true;
    seen_under = watched->held().front();
    seen_under_several += watched->held().size() > 1 ? 1 : 0;
}

int WINAPI look_and_compare(LPCWCH a, int a_length, LPCWCH b, int b_length, BOOL ignore_case) {
    look();
    return CompareStringW(LOCALE_INVARIANT, ignore_case ? NORM_IGNORECASE : 0, a, a_length, b, b_length);
}

void* look_and_allocate(std::size_t size) {
    static auto* const real = unpatched<void*(std::size_t)>(L"msvcrt.dll", "malloc");
    look();
    return real(size);
}

class ItemsLock : public testing::Test {
  protected:
    ItemsLock() {
        (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        service.publish(document);
        refresh_protected_locations();
    }
    ~ItemsLock() override { CoUninitialize(); }

    static ComPtr<orvNameSpace> make_folder() { return ov::com::adopt(ov::com::make_object<orvNameSpace>()); }

    /// The address of a folder's lock: what its making takes exclusively.
    static const SRWLOCK* lock_of_new_folder(ComPtr<orvNameSpace>& folder) {
        const lock_trace locks(GetModuleHandleW(nullptr));
        folder = make_folder();
        const auto found =
            std::find_if(locks.taken().begin(), locks.taken().end(),
                         [](const lock_trace::hold& hold) { return hold.how == mode::exclusive; });
        return found == locks.taken().end() ? nullptr : found->lock;
    }

    /// Runs `body`, and lets `look` see the locks that it holds.
    template <class Body>
    static holds locks_taken_by(Body body) {
        const lock_trace locks(GetModuleHandleW(nullptr));
        const import_patch<void*(std::size_t)> allocating(GetModuleHandleW(nullptr), "msvcrt.dll", "malloc",
                                                          look_and_allocate);
        const import_patch<decltype(CompareStringOrdinal)> comparing(
            GetModuleHandleW(nullptr), "kernel32.dll;kernelbase.dll", "CompareStringOrdinal",
            look_and_compare);
        seen = false;
        seen_under = {};
        seen_under_several = 0;
        watched = &locks;
        body();
        watched = nullptr;
        EXPECT_TRUE(locks.held().empty());
        EXPECT_EQ(locks.taken().empty() ? 0U : 1U, locks.most_at_once());
        EXPECT_EQ(0, seen_under_several);
        return locks.taken();
    }

    document_service service;
};

TEST_F(ItemsLock, making_a_folder_copies_under_the_caches_lock_and_adds_under_its_own) {
    ComPtr<orvNameSpace> folder;
    const holds taken = locks_taken_by([&] { folder = make_folder(); });
    ASSERT_GE(taken.size(), 2u);
    EXPECT_EQ((lock_trace::hold{&cacheLock, mode::shared}), taken[0]);
    EXPECT_EQ(mode::exclusive, taken[1].how);
    EXPECT_NE(&cacheLock, taken[1].lock);
    EXPECT_TRUE(seen);
    EXPECT_EQ(taken[1], seen_under) << "room for the locations is made within the folder's lock";
}

TEST_F(ItemsLock, two_lists_at_once_are_kept_one_after_the_other) {
    ComPtr<orvNameSpace> folder;
    const SRWLOCK* const items_lock = lock_of_new_folder(folder);
    const ITEMIDLIST_ABSOLUTE desktop{};
    const holds taken = locks_taken_by([&] { EXPECT_EQ(S_OK, folder->Initialize(&desktop)); });
    ASSERT_EQ(1U, taken.size());
    EXPECT_EQ(mode::exclusive, taken[0].how);
    EXPECT_NE(items_lock, taken[0].lock);
    EXPECT_NE(&cacheLock, taken[0].lock);
    EXPECT_TRUE(seen) << "nothing was kept";
    EXPECT_EQ(taken[0], seen_under) << "room for the list is made within the lock";
}

TEST_F(ItemsLock, parsing_walks_the_items_under_the_lock_held_shared) {
    ComPtr<orvNameSpace> folder;
    const SRWLOCK* const lock = lock_of_new_folder(folder);
    ASSERT_NE(nullptr, lock);
    const auto parse = [&](std::wstring name) {
        return locks_taken_by([&] {
            PIDLIST_RELATIVE id = nullptr;
            (void)folder->ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &id, nullptr);
            CoTaskMemFree(id);
        });
    };
    EXPECT_EQ((holds{{lock, mode::shared}}), parse(L"D:\\A folder with a long name"));
    EXPECT_TRUE(seen) << "no name was compared";
    EXPECT_EQ((lock_trace::hold{lock, mode::shared}), seen_under);
    EXPECT_EQ((holds{{lock, mode::shared}}), parse(L"no such item"));
}

TEST_F(ItemsLock, enumerating_copies_the_items_under_the_lock_held_shared) {
    ComPtr<orvNameSpace> folder;
    const SRWLOCK* const lock = lock_of_new_folder(folder);
    ASSERT_NE(nullptr, lock);
    ComPtr<IEnumIDList> enumerator;
    const holds taken = locks_taken_by([&] { (void)folder->EnumObjects(nullptr, 0, &enumerator); });
    EXPECT_EQ((holds{{lock, mode::shared}}), taken);
    EXPECT_TRUE(seen) << "nothing was copied";
    EXPECT_EQ((lock_trace::hold{lock, mode::shared}), seen_under);

    // The copy is the enumerator's own.
    const holds later = locks_taken_by([&] {
        PITEMID_CHILD entry = nullptr;
        ULONG fetched = 0;
        EXPECT_EQ(S_OK, enumerator->Next(1, &entry, &fetched));
        CoTaskMemFree(entry);
    });
    EXPECT_TRUE(later.empty());
}

TEST_F(ItemsLock, reader_waits_for_a_writer_and_not_for_another_reader) {
    ComPtr<orvNameSpace> folder;
    auto* const lock = const_cast<SRWLOCK*>(lock_of_new_folder(folder));
    ASSERT_NE(nullptr, lock);
    const auto start_reader = [&] {
        return ov::win::unique_kernel_handle(CreateThread(
            nullptr, 0,
            [](void* context) -> DWORD {
                ComPtr<IEnumIDList> enumerator;
                return static_cast<DWORD>(
                    static_cast<orvNameSpace*>(context)->EnumObjects(nullptr, 0, &enumerator));
            },
            folder.Get(), 0, nullptr));
    };
    AcquireSRWLockShared(lock);
    const auto beside_a_reader = start_reader();
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(beside_a_reader.get(), 10'000));
    ReleaseSRWLockShared(lock);

    AcquireSRWLockExclusive(lock);
    const auto behind_a_writer = start_reader();
    EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), WaitForSingleObject(behind_a_writer.get(), 100));
    ReleaseSRWLockExclusive(lock);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(behind_a_writer.get(), 10'000));
}

}  // namespace
