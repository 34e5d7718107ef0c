#include "namespace/items/display_name.h"

#include <windows.h>
#include <objbase.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <gtest/gtest.h>

#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"
#include "testkit/imports/import_patch.h"

namespace {

using namespace ov::name_space;
using ov::test::import_patch;

class DisplayName : public testing::Test {
  protected:
    DisplayName() { (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~DisplayName() override { CoUninitialize(); }

    static std::wstring of(const std::wstring& name) {
        return display_name_of(make_item_id(ItemData(name, item_types::folder, 0)).get());
    }
};

// A shell that knows every path by one name, to see what becomes of it.
const wchar_t* shell_name = nullptr;

struct named_item : IShellItem {
    STDMETHODIMP
    QueryInterface(REFIID, void** result) noexcept override {
        *result = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return 1; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
    STDMETHODIMP
    BindToHandler(IBindCtx*, REFGUID, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetParent(IShellItem**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetDisplayName(SIGDN kind, LPWSTR* result) noexcept override {
        if (kind != SIGDN_NORMALDISPLAY || shell_name == nullptr) {
            return E_INVALIDARG;
        }
        return SHStrDupW(shell_name, result);
    }
    STDMETHODIMP
    GetAttributes(SFGAOF, SFGAOF*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    Compare(IShellItem*, SICHINTF, int*) noexcept override { return E_NOTIMPL; }
};

named_item the_item;
std::wstring asked_path;

HRESULT WINAPI item_with_shell_name(PCWSTR path, IBindCtx*, REFIID, void** result) {
    asked_path = path;
    *result = &the_item;
    return S_OK;
}

HRESULT WINAPI no_item(PCWSTR, IBindCtx*, REFIID, void** result) {
    *result = nullptr;
    return E_FAIL;
}

// The name that the shell gives is not ours to choose on any real folder.
std::wstring shown_when_the_shell_says(const wchar_t* name, const std::wstring& stored) {
    shell_name = name;
    const import_patch<decltype(SHCreateItemFromParsingName)> patch(
        GetModuleHandleW(nullptr), "shell32.dll", "SHCreateItemFromParsingName", item_with_shell_name);
    return display_name_of(make_item_id(ItemData(stored, item_types::folder, 0)).get());
}

std::wstring shown_when_the_shell_knows_nothing(const std::wstring& stored) {
    const import_patch<decltype(SHCreateItemFromParsingName)> patch(GetModuleHandleW(nullptr), "shell32.dll",
                                                                    "SHCreateItemFromParsingName", no_item);
    return display_name_of(make_item_id(ItemData(stored, item_types::folder, 0)).get());
}

TEST_F(DisplayName, real_folder_has_the_name_that_the_shell_shows) {
    EXPECT_EQ(L"windows", of(L"C:\\windows"));
}

TEST_F(DisplayName, entry_of_another_folder_has_none) {
    auto id = make_item_id(ItemData(L"C:\\windows", item_types::folder, 0));
    id->mkid.abID[0] = 0x69;
    EXPECT_EQ(L"", display_name_of(id.get()));
    EXPECT_EQ(L"", display_name_of(nullptr));
}

TEST_F(DisplayName, location_that_is_not_there_is_shown_by_its_last_part) {
    EXPECT_EQ(L"Plans", of(L"C:\\no such folder\\Plans"));
}

TEST_F(DisplayName, shell_is_asked_for_the_stored_name) {
    EXPECT_EQ(L"Bilder", shown_when_the_shell_says(L"Bilder", L"C:\\Users\\a\\Pictures"));
    EXPECT_EQ(L"C:\\Users\\a\\Pictures", asked_path);
}

TEST_F(DisplayName, one_trailing_backslash_of_the_shells_name_is_dropped) {
    EXPECT_EQ(L"share", shown_when_the_shell_says(L"share\\", L"C:\\x"));
    EXPECT_EQ(L"share\\", shown_when_the_shell_says(L"share\\\\", L"C:\\x"));
}

TEST_F(DisplayName, single_backslash_from_the_shell_gives_the_fallback) {
    EXPECT_EQ(L"Plans", shown_when_the_shell_says(L"\\", L"C:\\Work\\Plans"));
}

TEST_F(DisplayName, empty_name_from_the_shell_gives_the_fallback) {
    EXPECT_EQ(L"Plans", shown_when_the_shell_says(L"", L"C:\\Work\\Plans"));
}

TEST_F(DisplayName, item_that_does_not_tell_its_name_gives_the_fallback) {
    EXPECT_EQ(L"Plans", shown_when_the_shell_says(nullptr, L"C:\\Work\\Plans"));
}

TEST_F(DisplayName, fallback_drops_one_trailing_backslash) {
    EXPECT_EQ(L"Plans", shown_when_the_shell_knows_nothing(L"C:\\Work\\Plans\\"));
    EXPECT_EQ(L"C:", shown_when_the_shell_knows_nothing(L"C:\\"));
}

TEST_F(DisplayName, fallback_of_a_name_without_separator_is_the_name) {
    EXPECT_EQ(L"One Click Restore", shown_when_the_shell_knows_nothing(L"One Click Restore"));
}

TEST_F(DisplayName, nothing_left_is_an_empty_name) {
    EXPECT_EQ(L"", shown_when_the_shell_knows_nothing(L""));
    EXPECT_EQ(L"", shown_when_the_shell_knows_nothing(L"\\"));
}

}  // namespace
