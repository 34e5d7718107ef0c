#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "tests/module/frame/classes_under_test.h"
#include "tests/support/import_patch.h"
#include "tests/support/shipped_module.h"

using Microsoft::WRL::ComPtr;

namespace ov::test {
namespace {

// The runtime is linked into the module, so that all of its allocations come through this import.
class memory_shortage {
  public:
    explicit memory_shortage(const shipped_module& module)
        : patch_(module.handle(), "msvcrt.dll;ucrtbase.dll", "malloc",
                 [](std::size_t) -> void* { return nullptr; }) {}

  private:
    import_patch<void*(std::size_t)> patch_;
};

ComPtr<IClassFactory> factory_of(const shipped_module& module, REFCLSID rclsid) {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(module.get_class_object(rclsid, IID_PPV_ARGS(&factory)), S_OK);
    return factory;
}

void expect_no_class_object(const shipped_module& module, REFCLSID rclsid) {
    void* made = untouched;
    {
        const memory_shortage shortage(module);
        EXPECT_EQ(module.get_class_object(rclsid, IID_IClassFactory, &made), E_OUTOFMEMORY);
    }
    EXPECT_EQ(made, untouched);
}

TEST(OutOfMemory, ClassObject_isRefused_andOutPointerStays) {
    for (const auto& row : classes_under_test) {
        const shipped_module module;  // one that has had no other failure before
        expect_no_class_object(module, row.id);
        EXPECT_EQ(module.can_unload_now(), S_OK) << row.name;
        EXPECT_NE(factory_of(module, row.id), nullptr) << row.name;
    }
}

TEST(OutOfMemory, Instance_isRefused_andOutPointerCleared) {
    for (const auto& row : classes_under_test) {
        const shipped_module module;
        {
            const auto factory = factory_of(module, row.id);
            void* made = untouched;
            {
                const memory_shortage shortage(module);
                EXPECT_EQ(factory->CreateInstance(nullptr, row.instance_interface, &made), E_OUTOFMEMORY)
                    << row.name;
            }
            EXPECT_EQ(made, nullptr) << row.name;
        }
        EXPECT_EQ(module.can_unload_now(), S_OK) << row.name;
    }
}

TEST(OutOfMemory, ManyThreadsOneAfterTheOther_areEachRefused) {
    const shipped_module module;
    for (int number = 0; number < 200; ++number) {
        const win::unique_kernel_handle thread(CreateThread(
            nullptr, 0,
            [](void* shared) -> DWORD {
                expect_no_class_object(*static_cast<const shipped_module*>(shared),
                                       class_ids::shell_extension);
                return 0;
            },
            const_cast<shipped_module*>(&module), 0, nullptr));
        ASSERT_EQ(WaitForSingleObject(thread.get(), 10000), WAIT_OBJECT_0);
    }
    EXPECT_EQ(module.can_unload_now(), S_OK);
}

// How many more indexes of its kind the process could still have.
template <class Allocate, class Free>
std::size_t indexes_left(Allocate allocate, Free give_back) {
    std::vector<DWORD> taken;
    for (DWORD index = allocate(); index != TLS_OUT_OF_INDEXES; index = allocate()) {
        taken.push_back(index);
    }
    std::for_each(taken.begin(), taken.end(), give_back);
    return taken.size();
}

std::pair<std::size_t, std::size_t> storage_indexes_left() {
    return {indexes_left([] { return TlsAlloc(); }, [](DWORD index) { TlsFree(index); }),
            indexes_left([] { return FlsAlloc(nullptr); }, [](DWORD index) { FlsFree(index); })};
}

TEST(OutOfMemory, LoadThatMetIt_leavesTheHostItsStorageIndexes) {
    // A host has 1,088 of them for all of its life, and is ended when they are gone.
    {
        const shipped_module module;  // what the system takes for itself at the first load
        expect_no_class_object(module, class_ids::shell_extension);
    }
    const auto before = storage_indexes_left();
    for (int load = 0; load < 3; ++load) {
        const shipped_module module;
        expect_no_class_object(module, class_ids::shell_extension);
    }
    EXPECT_EQ(storage_indexes_left(), before);
}

}  // namespace
}  // namespace ov::test
