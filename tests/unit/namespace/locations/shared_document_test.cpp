// What folders share that see the same text.

#include <gtest/gtest.h>
#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <array>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "namespace/folder/orv_name_space.h"
#include "namespace/locations/protected_locations.h"
#include "ovufc/com/adopt.h"
#include "ovufc/win/handle.h"
#include "testkit/memory/failing_allocations.h"
#include "testkit/process/module_attach.h"
#include "testkit/service/document_service.h"

namespace {

using namespace ov::name_space;
using names = std::vector<std::wstring_view>;

std::string document_with(const std::string& local_folders) {
    return R"({"hardDrive":{"folders":[)" + local_folders +
           R"(]},"mgmtCustom":[],"oneDrive":[],"google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})";
}

// Under a generation that the cache has not seen: it outlives each test's service.
void serve(ov::test::document_service& service, const std::string& local_folders) {
    static std::uint32_t generation = 0x5000;
    service.publish(document_with(local_folders));
    service.set_generation(++generation);
    refresh_protected_locations();
}

TEST(SharedDocument, same_text_is_read_once) {
    ov::test::document_service service;
    serve(service, R"("D:\\once")");
    const auto first = protected_locations();
    refresh_protected_locations();
    const auto second = protected_locations();
    EXPECT_EQ(names{L"D:\\once"}, first->local().names);
    EXPECT_EQ(first.get(), second.get());
    EXPECT_EQ(1, service.fetches());
}

TEST(SharedDocument, new_text_is_read_anew_and_the_old_one_stays_for_those_who_have_it) {
    ov::test::document_service service;
    serve(service, R"("D:\\old")");
    const auto old = protected_locations();
    serve(service, R"("D:\\new")");
    EXPECT_EQ(names{L"D:\\new"}, protected_locations()->local().names);
    EXPECT_EQ(names{L"D:\\old"}, old->local().names);
}

TEST(SharedDocument, fetch_that_fails_leaves_all_user_folders_and_nothing_else) {
    ov::test::document_service service;
    serve(service, R"("D:\\gone")");
    service.fail();
    service.set_generation(0x7001);
    refresh_protected_locations();
    const auto locations = protected_locations();
    EXPECT_FALSE(locations->is_complete());
    EXPECT_EQ(255U, locations->user_folder_mask);
}

TEST(SharedDocument, threads_that_meet_at_a_new_text_all_see_it) {
    ov::test::document_service service;
    for (int round = 0; round < 20; ++round) {
        serve(service, "\"D:\\\\round " + std::to_string(round) + '"');
        const std::wstring name = L"D:\\round " + std::to_wstring(round);
        const names expected{name};
        std::array<ov::win::unique_kernel_handle, 4> threads;
        for (auto& thread : threads) {
            const auto look = [](void* wanted) WINAPI -> DWORD {
                return protected_locations()->local().names == *static_cast<const names*>(wanted) ? 0 : 1;
            };
            thread.reset(CreateThread(nullptr, 0, look, const_cast<names*>(&expected), 0, nullptr));
            ASSERT_TRUE(thread);
        }
        for (const auto& thread : threads) {
            WaitForSingleObject(thread.get(), INFINITE);
            DWORD wrong = 1;
            GetExitCodeThread(thread.get(), &wrong);
            EXPECT_EQ(0U, wrong);
        }
    }
}

TEST(SharedDocument, text_that_there_was_no_memory_for_is_read_by_the_next) {
    ov::test::document_service service;
    const int allocations = ov::test::fail_each_allocation(
        GetModuleHandleW(nullptr), ov::test::failing_allocations::mode::once, [&](auto& memory) {
            memory.pause();
            serve(service, R"("D:\\needs memory")");
            memory.resume();
            (void)protected_locations();
            memory.pause();
            EXPECT_EQ(names{L"D:\\needs memory"}, protected_locations()->local().names);
        });
    EXPECT_GE(allocations, 4);
}

TEST(SharedDocument, further_folder_and_its_enumerator_cost_no_allocation_an_item) {
    constexpr int items = 1000;
    std::string folders;
    for (int item = 0; item < items; ++item) {
        folders += (item == 0 ? "" : ",") + std::string(R"("D:\\a name of the longer kind )") +
                   std::to_string(item) + '"';
    }
    ov::test::document_service service;
    serve(service, folders);
    const auto read = protected_locations();
    ASSERT_EQ(items, read->entry_count());
    const HMODULE self = GetModuleHandleW(nullptr);
    const int allocations =
        ov::test::fail_each_allocation(self, ov::test::failing_allocations::mode::from_then_on, [](auto&) {
            try {
                const auto folder = ov::com::adopt(ov::com::make_object<orvNameSpace>());
                Microsoft::WRL::ComPtr<IEnumIDList> list;
                if (folder != nullptr) {
                    (void)folder->EnumObjects(nullptr, SHCONTF_FOLDERS, &list);
                }
            } catch (const std::bad_alloc&) {
                return;
            }
        });
    EXPECT_LT(allocations, 60);
}

}  // namespace
