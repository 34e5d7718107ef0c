#include "tests/module/registration/registered_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>

#include "module/state/class_ids.h"
#include "ovufc/noncopyable.h"
#include "testkit/process/shipped_module.h"
#include "testkit/process/child_process.h"
#include "testkit/registry/registry_snapshot.h"
#include "testkit/registry/registry_watch.h"

// The shipped module against the prefix's own registry. Runs in a prefix that no other test uses meanwhile.
namespace ov::registration {
namespace {

using Microsoft::WRL::ComPtr;
using test::registry_watch;
using testing::IsEmpty;

class Registered : public testing::Test {
  protected:
    void SetUp() override { clean(); }
    void TearDown() override { clean(); }

    void clean() {
        ASSERT_EQ(module.unregister_server(), S_OK);
        remove_left_behind();
        ASSERT_THAT(registered_keys(), IsEmpty());
    }

    test::shipped_module module;
};

TEST_F(Registered, every_row_is_there_in_both_views) {
    ASSERT_EQ(module.register_server(), S_OK);
    expect_registered();
}

TEST_F(Registered, keys_without_a_value_have_none) {
    ASSERT_EQ(module.register_server(), S_OK);
    for (const std::wstring& name : {restore_name, addons_name}) {
        for (const REGSAM view : view_flags) {
            HKEY key = nullptr;
            const std::wstring path = L"CLSID\\" + name + L"\\ShellEx\\MayChangeDefaultMenu";
            ASSERT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ | view, &key), 0);
            DWORD values = 1;
            EXPECT_EQ(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values,
                                       nullptr, nullptr, nullptr, nullptr),
                      0);
            EXPECT_EQ(values, 0U);
            RegCloseKey(key);
        }
    }
}

TEST_F(Registered, registering_twice_changes_nothing) {
    ASSERT_EQ(module.register_server(), S_OK);
    const auto once = test::take_registry_snapshot(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Classes");
    ASSERT_EQ(module.register_server(), S_OK);
    const auto twice = test::take_registry_snapshot(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Classes");
    EXPECT_TRUE(once == twice);
    expect_registered();
}

TEST_F(Registered, registering_mends_what_was_changed) {
    ASSERT_EQ(module.register_server(), S_OK);
    const std::wstring path = L"CLSID\\" + restore_name + L"\\InprocServer32";
    RegSetKeyValueW(HKEY_CLASSES_ROOT, path.c_str(), nullptr, REG_SZ, L"x", 4);
    RegDeleteKeyValueW(HKEY_CLASSES_ROOT, path.c_str(), L"ThreadingModel");
    ASSERT_EQ(module.register_server(), S_OK);
    expect_registered();
}

TEST_F(Registered, unregistering_where_nothing_is_there_succeeds) {
    EXPECT_EQ(module.unregister_server(), S_OK);
    EXPECT_EQ(module.unregister_server(), S_OK);
}

TEST_F(Registered, unregistering_leaves_what_it_always_left) {
    ASSERT_EQ(module.register_server(), S_OK);
    ASSERT_EQ(module.unregister_server(), S_OK);
    EXPECT_THAT(registered_keys(), testing::UnorderedElementsAreArray(left_behind));
}

TEST_F(Registered, nothing_else_in_the_registry_is_touched) {
    // Parents that a fresh system lacks come to stay; make them first.
    ASSERT_EQ(module.register_server(), S_OK);
    clean();
    const auto before = test::take_registry_snapshot(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    ASSERT_GT(before.size(), 1000U);
    ASSERT_EQ(module.register_server(), S_OK);
    const auto while_registered =
        test::compare(before, test::take_registry_snapshot(HKEY_LOCAL_MACHINE, L"SOFTWARE"));
    EXPECT_THAT(while_registered.removed, IsEmpty());
    EXPECT_THAT(while_registered.changed, IsEmpty());
    EXPECT_GT(while_registered.added.size(), 80U);
    const std::array<std::wstring, 8> ours = {restore_name,
                                              addons_name,
                                              L"{3C41A7E2-6B0D-4F93-9E25-7A1D0C6B2E48}",
                                              L"{9B2E6D14-C3A8-4E57-A1F0-5D8C27B4E913}",
                                              L"Orvane Vaultkeep",
                                              L"\\OrvaneFolderType",
                                              L"\\OrvaneRestoreType",
                                              L"\\OrvaneAddonsType"};
    for (const std::wstring& path : while_registered.added) {
        EXPECT_TRUE(std::ranges::any_of(ours, [&](const std::wstring& name) {
            return path.find(name) != std::wstring::npos;
        })) << testing::PrintToString(path);
    }

    clean();
    const auto afterwards =
        test::compare(before, test::take_registry_snapshot(HKEY_LOCAL_MACHINE, L"SOFTWARE"));
    EXPECT_THAT(afterwards.added, IsEmpty());
    EXPECT_THAT(afterwards.removed, IsEmpty());
    EXPECT_THAT(afterwards.changed, IsEmpty());
}

TEST_F(Registered, a_failure_at_any_write_leaves_no_class_registered) {
    std::size_t calls = 0;
    std::size_t calls_that_can_fail = 0;
    {
        registry_watch watch(module.handle(), registry_watch::mode::pass_through);
        ASSERT_EQ(module.register_server(), S_OK);
        calls = watch.calls().size();
        calls_that_can_fail =
            calls - static_cast<std::size_t>(std::ranges::count_if(
                        watch.calls(), [](const std::string& line) { return line.starts_with("close"); }));
    }
    clean();
    std::size_t failures = 0;
    for (std::size_t failing = 0; failing < calls; ++failing) {
        bool failed = false;
        HRESULT result = S_OK;
        {
            registry_watch watch(module.handle(), registry_watch::mode::pass_through);
            watch.answer = [&](std::size_t number, const std::string& line) -> std::optional<LSTATUS> {
                if (number != failing || line.starts_with("close")) {
                    return std::nullopt;
                }
                failed = true;
                return ERROR_WRITE_PROTECT;
            };
            result = module.register_server();
        }
        if (failed) {
            ++failures;
            ASSERT_EQ(result, E_UNEXPECTED) << "call " << failing;
        }
        if (failed) {
            // The module has taken back what it could; only what is left behind on purpose may be there.
            for (const std::wstring& key : registered_keys()) {
                ASSERT_NE(std::ranges::find(left_behind, key), left_behind.end())
                    << testing::PrintToString(key) << " after call " << failing;
            }
        }
    }
    EXPECT_EQ(failures, calls_that_can_fail);
}

TEST_F(Registered, access_denied_once_is_overcome_by_the_backup_option) {
    registry_watch watch(module.handle(), registry_watch::mode::pass_through);
    watch.answer = [](std::size_t, const std::string& line) -> std::optional<LSTATUS> {
        const bool normal = line.starts_with("create") && line.find(" options 0 ") != std::string::npos;
        return normal ? std::optional<LSTATUS>(ERROR_ACCESS_DENIED) : std::nullopt;
    };
    EXPECT_EQ(module.register_server(), S_OK);
    expect_registered();
}

// In the 32-bit view stands the path to which the installer copies the 32-bit module; this does it for a
// 32-bit test.
class installed_module_32 : private noncopyable {
  public:
    installed_module_32() {
        if (sizeof(void*) == 4) {
            EXPECT_TRUE(CopyFileW(module_path().c_str(), path_, FALSE));
        }
    }
    ~installed_module_32() {
        if (sizeof(void*) == 4) {
            EXPECT_TRUE(DeleteFileW(path_));
        }
    }

  private:
    const wchar_t* path_ = L"C:\\windows\\SysWow64\\orvshellext.dll";
};

TEST_F(Registered, classes_are_found_by_the_registry_alone) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    const std::array<const CLSID*, 4> classes = {&class_ids::shell_extension, &class_ids::namespace_folder,
                                                 &class_ids::one_click_restore, &class_ids::addons};
    ASSERT_EQ(module.register_server(), S_OK);
    const installed_module_32 installed;
    for (const CLSID* id : classes) {
        ComPtr<IClassFactory> factory;
        EXPECT_EQ(CoGetClassObject(*id, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory)), S_OK);
    }
    ASSERT_EQ(module.unregister_server(), S_OK);
    for (const CLSID* id : classes) {
        ComPtr<IClassFactory> factory;
        EXPECT_EQ(CoGetClassObject(*id, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory)),
                  REGDB_E_CLASSNOTREG);
    }
    CoUninitialize();
}

TEST_F(Registered, regsvr_32_registers_and_unregisters) {
    const std::wstring program = L"C:\\windows\\system32\\regsvr32.exe";
    test::child_process install(program, {L"/s", module_path()});
    EXPECT_EQ(install.wait(30'000), std::optional<DWORD>(0));
    expect_registered();
    test::child_process remove(program, {L"/u", L"/s", module_path()});
    EXPECT_EQ(remove.wait(30'000), std::optional<DWORD>(0));
    EXPECT_THAT(registered_keys(), testing::UnorderedElementsAreArray(left_behind));
}

TEST_F(Registered, registering_takes_well_under_a_second) {
    std::array<std::int64_t, 15> times_us{};
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    for (std::int64_t& time_us : times_us) {
        LARGE_INTEGER begin{};
        LARGE_INTEGER end{};
        QueryPerformanceCounter(&begin);
        ASSERT_EQ(module.register_server(), S_OK);
        QueryPerformanceCounter(&end);
        time_us = (end.QuadPart - begin.QuadPart) * 1'000'000 / frequency.QuadPart;
        clean();
    }
    std::ranges::sort(times_us);
    std::printf("one registration: median %lld us of %zu\n", static_cast<long long>(times_us[7]),
                times_us.size());
    EXPECT_LT(times_us[7], 1'000'000);
}

}  // namespace
}  // namespace ov::registration
