// The shipped module's cache of the protected locations: when it asks the driver, and what it makes of
// failures.

#include "ovufc/com/adopt.h"
#include "testkit/imports/absent_driver.h"
#include "testkit/process/watchdog.h"
#include "testkit/service/document_service.h"
#include "tests/module/namespace/module_folder.h"

namespace {

using namespace ov::test;

std::string one_location(const std::string& name) {
    return R"({"hardDrive":{"folders":["D:\\)" + name +
           R"("]},"mgmtCustom":[],"oneDrive":[],"google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})";
}

class NamespaceCache : public module_folder_test {
  protected:
    [[nodiscard]] std::wstring first_name() const { return items_of(*make_folder().Get()).front().name; }

    document_service service;
};

TEST_F(NamespaceCache, generation_of_zero_never_fetches) {
    service.publish(one_location("a"));
    service.set_generation(0);
    EXPECT_GE(items_of(*make_folder().Get()).size(), 7u) << "the user folders";
    EXPECT_EQ(0, service.fetches());
}

TEST_F(NamespaceCache, absent_driver_is_asked_for_its_generation_and_its_flags_alone) {
    const absent_driver no_driver(module.handle());
    const auto folder = make_folder();
    EXPECT_EQ(known_path(FOLDERID_Desktop), items_of(*folder.Get()).front().name);
    EXPECT_EQ(no_driver.opens(), 2);
}

TEST_F(NamespaceCache, same_generation_is_fetched_once) {
    service.publish(one_location("a"));
    EXPECT_EQ(L"D:\\a", first_name());
    EXPECT_EQ(L"D:\\a", first_name());
    EXPECT_EQ(1, service.fetches());
}

TEST_F(NamespaceCache, changed_generation_is_fetched_anew) {
    service.publish(one_location("a"));
    EXPECT_EQ(L"D:\\a", first_name());
    service.publish(one_location("b"));
    EXPECT_EQ(L"D:\\b", first_name());
    EXPECT_EQ(2, service.fetches());
}

TEST_F(NamespaceCache, generation_that_goes_to_zero_keeps_the_document) {
    service.publish(one_location("a"));
    EXPECT_EQ(L"D:\\a", first_name());
    service.set_generation(0);
    EXPECT_EQ(L"D:\\a", first_name());
    EXPECT_EQ(1, service.fetches());
}

TEST_F(NamespaceCache, live_folder_is_never_refreshed) {
    service.publish(one_location("a"));
    const auto old = make_folder();
    service.publish(one_location("b"));
    EXPECT_EQ(L"D:\\b", first_name());
    EXPECT_EQ(L"D:\\a", items_of(*old.Get()).front().name);
}

TEST_F(NamespaceCache, failed_fetch_shows_the_user_folders_and_is_tried_again) {
    service.publish(one_location("a"));
    EXPECT_EQ(L"D:\\a", first_name());
    service.publish(one_location("b"));
    service.fail();
    EXPECT_EQ(known_path(FOLDERID_Desktop), first_name()) << "the old document is not kept";
    EXPECT_EQ(2, service.fetches());
    EXPECT_EQ(known_path(FOLDERID_Desktop), first_name());
    EXPECT_EQ(3, service.fetches()) << "an empty document is asked for again, though its generation is known";
}

TEST_F(NamespaceCache, each_folder_asks_and_each_interface_of_a_made_folder_does_not) {
    service.publish(one_location("a"));
    const auto folder = make_folder();
    ComPtr<IPersistFolder2> other;
    EXPECT_EQ(S_OK, folder.As(&other));
    EXPECT_EQ(1, service.fetches());
}

TEST_F(NamespaceCache, refused_aggregation_asks_nobody) {
    service.publish(one_location("a"));
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(S_OK, module.get_class_object(ov::class_ids::namespace_folder, IID_PPV_ARGS(&factory)));
    void* made = this;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(factory.Get(), IID_IShellFolder, &made));
    EXPECT_EQ(0, service.fetches());
}

TEST_F(NamespaceCache, interface_that_the_folder_lacks_refreshes_all_the_same) {
    service.publish(one_location("a"));
    void* made = this;
    EXPECT_EQ(E_NOINTERFACE, module.create(ov::class_ids::namespace_folder, IID_IContextMenu, &made));
    EXPECT_EQ(1, service.fetches());
}

TEST_F(NamespaceCache, folders_made_at_the_same_time_wait_for_one_fetch) {
    const watchdog limit(30'000);
    service.publish(one_location("a"));
    service.set_delay(300);
    constexpr int thread_count = 6;
    struct task {
        const shipped_module* module;
        std::wstring name;
    };
    std::vector<task> tasks(thread_count, task{&module, L""});
    std::vector<ov::win::unique_kernel_handle> threads;
    for (task& one : tasks) {
        threads.emplace_back(CreateThread(
            nullptr, 0,
            [](void* context) WINAPI -> DWORD {
                auto& mine = *static_cast<task*>(context);
                (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
                {
                    ComPtr<IShellFolder2> folder;
                    if (mine.module->create(ov::class_ids::namespace_folder, IID_IShellFolder2,
                                            reinterpret_cast<void**>(folder.GetAddressOf())) == S_OK) {
                        mine.name = items_of(*folder.Get()).front().name;
                    }
                }
                CoUninitialize();
                return 0;
            },
            &one, 0, nullptr));
    }
    for (auto& thread : threads) {
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread.get(), 20'000));
    }
    for (const task& one : tasks) {
        EXPECT_EQ(L"D:\\a", one.name);
    }
    EXPECT_EQ(1, service.fetches());
    EXPECT_EQ(S_OK, module.can_unload_now());
}

TEST_F(NamespaceCache, folder_that_is_there_answers_while_another_waits_for_its_fetch) {
    const watchdog limit(30'000);
    service.publish(one_location("a"));
    const auto there = make_folder();
    service.publish(one_location("b"));
    service.set_delay(1'500);
    const ov::win::unique_kernel_handle thread(CreateThread(
        nullptr, 0,
        [](void* context) WINAPI -> DWORD {
            auto* module_in_use = static_cast<const shipped_module*>(context);
            (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            {
                ComPtr<IShellFolder2> folder;
                (void)module_in_use->create(ov::class_ids::namespace_folder, IID_IShellFolder2,
                                            reinterpret_cast<void**>(folder.GetAddressOf()));
            }
            CoUninitialize();
            return 0;
        },
        &module, 0, nullptr));
    for (int waited = 0; service.fetches() < 2 && waited < 5'000; waited += 10) {
        Sleep(10);
    }
    ASSERT_EQ(2, service.fetches());
    EXPECT_EQ(L"D:\\a", items_of(*there.Get()).front().name);
    EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), WaitForSingleObject(thread.get(), 0))
        << "the fetch ended too soon to show anything";
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread.get(), 20'000));
}

}  // namespace
