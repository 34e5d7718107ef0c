#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include "ovufc/com/adopt.h"
#include "testkit/process/shipped_module.h"
#include "tests/module/frame/classes_under_test.h"

using Microsoft::WRL::ComPtr;

namespace ov::test {
namespace {

class ClassObject : public testing::Test {
  protected:
    void* request(REFCLSID rclsid, REFIID riid, HRESULT expected) {
        void* made = untouched;
        EXPECT_EQ(module_.get_class_object(rclsid, riid, &made), expected);
        return made;
    }

    ComPtr<IClassFactory> factory_of(REFCLSID rclsid) {
        ComPtr<IClassFactory> factory;
        factory = com::adopt(static_cast<IClassFactory*>(request(rclsid, IID_IClassFactory, S_OK)));
        return factory;
    }

    shipped_module module_;
};

ULONG count_of(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

TEST_F(ClassObject, unknown_class_is_not_available_and_out_pointer_stays) {
    EXPECT_EQ(request(CLSID_NULL, IID_IClassFactory, CLASS_E_CLASSNOTAVAILABLE), untouched);
    EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObject, each_class_is_handed_out_with_one_reference) {
    for (const auto& row : classes_under_test) {
        for (const IID& riid : {IID_IUnknown, IID_IClassFactory}) {
            auto* made = static_cast<IUnknown*>(request(row.id, riid, S_OK));
            EXPECT_EQ(count_of(made), 1U) << row.name;
            EXPECT_EQ(made->Release(), 0U) << row.name;
        }
    }
    EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObject, other_interface_is_refused_and_the_class_object_freed) {
    for (const auto& row : classes_under_test) {
        EXPECT_EQ(request(row.id, IID_IContextMenu, E_NOINTERFACE), nullptr) << row.name;
        EXPECT_EQ(module_.can_unload_now(), S_OK) << row.name;
    }
}

TEST_F(ClassObject, null_out_pointer_is_refused) {
    for (const auto& row : classes_under_test) {
        EXPECT_EQ(module_.get_class_object(row.id, IID_IClassFactory, nullptr), E_POINTER) << row.name;
        EXPECT_EQ(factory_of(row.id)->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER) << row.name;
    }
    EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObject, lock_counts_up_and_down_and_never_below_zero) {
    const auto factory = factory_of(class_ids::shell_extension);
    EXPECT_EQ(factory->LockServer(FALSE), 0);
    EXPECT_EQ(factory->LockServer(TRUE), 1);
    EXPECT_EQ(factory->LockServer(7), 2);
    EXPECT_EQ(factory->LockServer(FALSE), 1);
    EXPECT_EQ(factory->LockServer(FALSE), 0);
    EXPECT_EQ(factory->LockServer(FALSE), 0);
}

TEST_F(ClassObject, aggregation_is_refused) {
    for (const auto& row : classes_under_test) {
        const auto factory = factory_of(row.id);
        void* made = untouched;
        EXPECT_EQ(factory->CreateInstance(factory.Get(), row.instance_interface, &made),
                  CLASS_E_NOAGGREGATION)
            << row.name;
        EXPECT_EQ(made, nullptr) << row.name;
    }
}

TEST_F(ClassObject, other_instance_interface_answers_ok_and_touches_nothing) {
    for (const auto& row : classes_under_test) {
        if (row.id == class_ids::namespace_folder) {
            continue;
        }
        const auto factory = factory_of(row.id);
        for (const IID& riid : {IID_IUnknown, IID_IShellFolder}) {
            void* made = untouched;
            EXPECT_EQ(factory->CreateInstance(nullptr, riid, &made), S_OK) << row.name;
            EXPECT_EQ(made, untouched) << row.name;
        }
    }
    EXPECT_EQ(module_.can_unload_now(), S_OK);
}

TEST_F(ClassObject, restore_and_addons_make_nothing_for_shell_ext_init) {
    for (const CLSID& id : {class_ids::one_click_restore, class_ids::addons}) {
        void* made = untouched;
        EXPECT_EQ(factory_of(id)->CreateInstance(nullptr, IID_IShellExtInit, &made), S_OK);
        EXPECT_EQ(made, untouched);
    }
}

TEST_F(ClassObject, namespace_folder_passes_every_interface_on) {
    const auto factory = factory_of(class_ids::namespace_folder);
    void* made = untouched;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IContextMenu, &made), E_NOINTERFACE);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPersistFolder2, &made), S_OK);
    EXPECT_EQ(static_cast<IUnknown*>(made)->Release(), 0U);
}

TEST_F(ClassObject, each_instance_is_owned_by_its_caller_alone) {
    for (const auto& row : classes_under_test) {
        ComPtr<IUnknown> made;
        ASSERT_EQ(
            module_.create(row.id, row.instance_interface, reinterpret_cast<void**>(made.GetAddressOf())),
            S_OK)
            << row.name;
        EXPECT_EQ(count_of(made.Get()), 1U) << row.name;
    }
    EXPECT_EQ(module_.can_unload_now(), S_OK);
}

}  // namespace
}  // namespace ov::test
