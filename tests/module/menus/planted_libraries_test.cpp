// Libraries of the product's names where they should not be: the module takes its own folder's or none.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "module/state/class_ids.h"
#include "testkit/files/temp_folder.h"
#include "testkit/imports/import_patch.h"
#include "testkit/process/shipped_module.h"
#include "tests/module/menus/menus_fixture.h"

namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;

void copy_built(const wchar_t* name, const std::wstring& to) {
    ASSERT_TRUE(CopyFileW((program_directory() + name).c_str(), to.c_str(), FALSE)) << GetLastError();
}

/// Every library that the module loads, and what it got.
class recorded_loads {
  public:
    struct load {
        std::wstring path;
        HMODULE library;
    };
    explicit recorded_loads(HMODULE module) : patch_(module, "kernel32.dll", "LoadLibraryExW", &on_load) {
        current = this;
    }
    ~recorded_loads() { current = nullptr; }

    [[nodiscard]] const std::vector<load>& all() const noexcept { return loads_; }
    /// Called before each.
    std::function<void(const std::wstring& path)> before;

  private:
    static HMODULE WINAPI on_load(LPCWSTR path, HANDLE file, DWORD flags) {
        if (current->before) {
            current->before(path);
        }
        const HMODULE library = current->patch_.original()(path, file, flags);
        current->loads_.push_back({path, library});
        return library;
    }

    static inline recorded_loads* current = nullptr;
    std::vector<load> loads_;
    import_patch<decltype(LoadLibraryExW)> patch_;
};

/// The current folder and the first of PATH, until the end of the scope.
class searched_first : private noncopyable {
  public:
    explicit searched_first(const std::wstring& folder) {
        GetCurrentDirectoryW(static_cast<DWORD>(directory_.size()), directory_.data());
        GetEnvironmentVariableW(L"PATH", path_.data(), static_cast<DWORD>(path_.size()));
        SetCurrentDirectoryW(folder.c_str());
        SetEnvironmentVariableW(L"PATH", (folder + L";" + path_.data()).c_str());
    }
    ~searched_first() {
        SetCurrentDirectoryW(directory_.data());
        SetEnvironmentVariableW(L"PATH", path_.data());
    }

  private:
    std::array<wchar_t, MAX_PATH + 1> directory_{};
    std::array<wchar_t, 8192> path_{};
};

class PlantedLibraries : public testing::Test {
  protected:
    PlantedLibraries() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~PlantedLibraries() override { CoUninitialize(); }

    void SetUp() override { copy_built(L"orvshellext.dll", module_path()); }
    [[nodiscard]] std::wstring module_path() const { return installed_.path() + L"\\orvshellext.dll"; }
    [[nodiscard]] std::wstring texts_path() const { return installed_.path() + L"\\orvres.dll"; }

    watchdog dog_{60'000};
    temp_folder installed_;
    temp_folder elsewhere_;
};

// Good ones, with the maker's signature: what is found is not what decides, but where it is looked for.
TEST_F(PlantedLibraries, current_folder_and_path_are_not_searched) {
    copy_built(L"orvres.dll", elsewhere_.path() + L"\\orvres.dll");
    copy_built(L"orvdialog.dll", elsewhere_.path() + L"\\orvdialog.dll");
    const searched_first planted(elsewhere_.path());
    ASSERT_NE(LoadLibraryW(L"orvdialog.dll"), nullptr) << "the plant is where the system looks";
    FreeLibrary(GetModuleHandleW(L"orvdialog.dll"));
    ASSERT_EQ(GetModuleHandleW(L"orvdialog.dll"), nullptr);

    const shipped_module module(module_path());
    scripted_service service(
        [](const auto&) { return R"({"data":{"protectedFolder":true},"statusCode":0})"; });
    const recorded_loads loads(module.handle());
    EXPECT_EQ(first_header(module), L"");
    ComPtr<IContextMenu> menu;
    ASSERT_EQ(module.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)), S_OK);
    ASSERT_EQ(initialize(menu.Get(), select_paths({elsewhere_.path()}).Get()), S_OK);
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK) << "the dialog library is missing";

    ASSERT_EQ(loads.all().size(), 1U);
    EXPECT_EQ(loads.all()[0].path, installed_.path() + L"\\orvdialog.dll");
    EXPECT_EQ(loads.all()[0].library, nullptr);
    EXPECT_EQ(GetModuleHandleW(L"orvdialog.dll"), nullptr);
}

// The check and the load each open the file: who can exchange it in between could exchange the module as
// well. What he wins is texts; nothing of the file is run.
TEST_F(PlantedLibraries, library_exchanged_between_check_and_load_is_data_and_not_run) {
    copy_built(L"orvres.dll", texts_path());
    const shipped_module module(module_path());
    recorded_loads loads(module.handle());
    loads.before = [&](const std::wstring& path) {
        EXPECT_EQ(path, texts_path());
        copy_built(L"orvdialog.dll", path);
    };
    (void)first_header(module);
    ASSERT_EQ(loads.all().size(), 1U);
    const auto handle = reinterpret_cast<std::uintptr_t>(loads.all()[0].library);
    EXPECT_NE(handle, 0U);
    EXPECT_NE(handle & 3, 0U) << "the mark of a file that is loaded as data";
    EXPECT_EQ(GetModuleHandleW(texts_path().c_str()), nullptr);
}

}  // namespace
}  // namespace ov::test
