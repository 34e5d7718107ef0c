#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <vector>

#include "testkit/process/shipped_module.h"
#include "testkit/imports/import_patch.h"
#include "testkit/memory/memory_shortage.h"
#include "testkit/process/before_attach.h"
#include "tests/module/frame/classes_under_test.h"

using Microsoft::WRL::ComPtr;

namespace ov::test {
namespace {

ComPtr<IClassFactory> factory_of(const shipped_module& module, REFCLSID rclsid) {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(module.get_class_object(rclsid, IID_PPV_ARGS(&factory)), S_OK);
    return factory;
}

void expect_no_class_object(const shipped_module& module, REFCLSID rclsid) {
    void* made = untouched;
    {
        const memory_shortage shortage(module.handle());
        EXPECT_EQ(module.get_class_object(rclsid, IID_IClassFactory, &made), E_OUTOFMEMORY);
    }
    EXPECT_EQ(made, untouched);
}

TEST(OutOfMemory, class_object_is_refused_and_out_pointer_stays) {
    for (const auto& row : classes_under_test) {
        const shipped_module module;  // one that has had no other failure before
        expect_no_class_object(module, row.id);
        EXPECT_EQ(module.can_unload_now(), S_OK) << row.name;
        EXPECT_NE(factory_of(module, row.id), nullptr) << row.name;
    }
}

TEST(OutOfMemory, instance_is_refused_and_out_pointer_cleared) {
    for (const auto& row : classes_under_test) {
        const shipped_module module;
        {
            const auto factory = factory_of(module, row.id);
            void* made = untouched;
            {
                const memory_shortage shortage(module.handle());
                EXPECT_EQ(factory->CreateInstance(nullptr, row.instance_interface, &made), E_OUTOFMEMORY)
                    << row.name;
            }
            EXPECT_EQ(made, nullptr) << row.name;
        }
        EXPECT_EQ(module.can_unload_now(), S_OK) << row.name;
    }
}

TEST(OutOfMemory, many_threads_one_after_the_other_are_each_refused) {
    const shipped_module module;
    for (int number = 0; number < 200; ++number) {
        const win::unique_kernel_handle thread(CreateThread(
            nullptr, 0,
            [](void* shared) WINAPI -> DWORD {
                expect_no_class_object(*static_cast<const shipped_module*>(shared),
                                       class_ids::shell_extension);
                return 0;
            },
            const_cast<shipped_module*>(&module), 0, nullptr));
        ASSERT_EQ(WaitForSingleObject(thread.get(), 10000), WAIT_OBJECT_0);
    }
    EXPECT_EQ(module.can_unload_now(), S_OK);
}

// Holds threads where the module throws, until no more of them come there.
class throwing_held {
  public:
    explicit throwing_held(HMODULE module) : patch_(module, "kernel32.dll", "RaiseException", &on_raise) {
        current = this;
    }

    /// Lets them go as soon as nobody new came for a while; how many were held at the same moment.
    LONG let_go() {
        LONG seen = -1;
        while (seen != arrived_) {
            seen = arrived_;
            Sleep(500);
        }
        SetEvent(over_.get());
        return seen;
    }

  private:
    static void WINAPI on_raise(DWORD code, DWORD flags, DWORD count, const ULONG_PTR* arguments) {
        ++current->arrived_;
        WaitForSingleObject(current->over_.get(), INFINITE);
        current->patch_.original()(code, flags, count, arguments);
    }

    static inline throwing_held* current = nullptr;
    std::atomic<LONG> arrived_{0};
    win::unique_kernel_handle over_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    import_patch<decltype(RaiseException)> patch_;
};

struct crowd {
    const shipped_module module;
    std::atomic<LONG> refused{0};
};

DWORD WINAPI be_refused(void* shared) {
    auto& all = *static_cast<crowd*>(shared);
    void* made = untouched;
    if (all.module.get_class_object(class_ids::addons, IID_IClassFactory, &made) == E_OUTOFMEMORY) {
        ++all.refused;
    }
    return 0;
}

TEST(OutOfMemory, more_threads_at_once_than_there_is_reserve_for_are_each_refused) {
    constexpr LONG threads = 100;
    crowd all;
    std::vector<win::unique_kernel_handle> running;
    throwing_held held(all.module.handle());
    const memory_shortage shortage(all.module.handle());
    for (LONG number = 0; number < threads; ++number) {
        running.emplace_back(CreateThread(nullptr, 0, &be_refused, &all, 0, nullptr));
    }
    // Those beyond the reserve have not thrown yet: they wait for one of these to be done.
    const LONG at_once = held.let_go();
    EXPECT_GT(at_once, 1);
    EXPECT_LT(at_once, threads);
    for (const auto& thread : running) {
        ASSERT_EQ(WaitForSingleObject(thread.get(), 30000), WAIT_OBJECT_0);
    }
    EXPECT_EQ(all.refused, threads);
}

TEST(OutOfMemory, module_loaded_without_memory_refuses_later_too) {
    std::optional<memory_shortage> shortage;
    const before_attach starve(L"orvshellext.dll", [&](HMODULE module) { shortage.emplace(module); });
    const shipped_module module;
    ASSERT_TRUE(shortage);
    shortage.reset();
    expect_no_class_object(module, class_ids::shell_extension);
    EXPECT_NE(factory_of(module, class_ids::shell_extension), nullptr);
}

TEST(OutOfMemory, host_without_storage_indexes_is_not_ended_by_it) {
    std::vector<DWORD> tls;
    std::vector<DWORD> fls;
    {
        const shipped_module
            module;  // loaded as long as there were some: the system's own libraries need them too
        for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc()) {
            tls.push_back(index);
        }
        for (DWORD index = FlsAlloc(nullptr); index != FLS_OUT_OF_INDEXES; index = FlsAlloc(nullptr)) {
            fls.push_back(index);
        }
        expect_no_class_object(module, class_ids::shell_extension);
    }
    std::for_each(tls.begin(), tls.end(), [](DWORD index) { TlsFree(index); });
    std::for_each(fls.begin(), fls.end(), [](DWORD index) { FlsFree(index); });
}

}  // namespace
}  // namespace ov::test
