// The entry that a command was asked for, and what becomes of the commands when the shell cannot tell it.

#include "shell/entry_menus/selected_entry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>

#include <vector>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "shell/entry_menus/orv_addons_ctx_menu.h"
#include "shell/entry_menus/orv_restore_ctx_menu.h"
#include "testkit/checks/message_box_script.h"
#include "testkit/imports/import_patch.h"
#include "testkit/imports/unpatched.h"
#include "testkit/process/module_attach.h"
#include "testkit/shell/data_object.h"

namespace ov::shell {
namespace {

using Microsoft::WRL::ComPtr;
using test::import_patch;

constexpr HRESULT some_failure = static_cast<HRESULT>(0x80040222);

class fake_item final : public com::com_object<fake_item, com::bases<IShellItem>,
                                               com::answers<com::answer<IUnknown>, com::answer<IShellItem>>> {
  public:
    HRESULT name_answer = S_OK;
    std::vector<SIGDN> asked_for;
    wchar_t* handed_out = nullptr;

    STDMETHODIMP
    GetDisplayName(SIGDN kind, LPWSTR* name) noexcept override {
        asked_for.push_back(kind);
        handed_out =
            SUCCEEDED(name_answer) ? static_cast<wchar_t*>(CoTaskMemAlloc(sizeof(wchar_t))) : nullptr;
        if (handed_out != nullptr) {
            *handed_out = L'\0';
        }
        *name = handed_out;
        return name_answer;
    }

    STDMETHODIMP
    BindToHandler(IBindCtx*, REFGUID, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetParent(IShellItem**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetAttributes(SFGAOF, SFGAOF*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    Compare(IShellItem*, SICHINTF, int*) noexcept override { return E_NOTIMPL; }
};

class fake_items final
    : public com::com_object<fake_items, com::bases<IShellItemArray>,
                             com::answers<com::answer<IUnknown>, com::answer<IShellItemArray>>> {
  public:
    ComPtr<fake_item> item = com::adopt(com::make_object<fake_item>());
    HRESULT item_answer = S_OK;
    std::vector<DWORD> asked_for;

    STDMETHODIMP
    GetItemAt(DWORD index, IShellItem** result) noexcept override {
        asked_for.push_back(index);
        *result = nullptr;
        return SUCCEEDED(item_answer) ? item.CopyTo(result) : item_answer;
    }

    STDMETHODIMP
    BindToHandler(IBindCtx*, REFGUID, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetPropertyStore(GETPROPERTYSTOREFLAGS, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetPropertyDescriptionList(REFPROPERTYKEY, REFIID, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetAttributes(SIATTRIBFLAGS, SFGAOF, SFGAOF*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    GetCount(DWORD*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP
    EnumItems(IEnumShellItems**) noexcept override { return E_NOTIMPL; }
};

fake_items* made_items = nullptr;
std::vector<void*> freed;
int elevations = 0;

HRESULT WINAPI make_items(IDataObject*, REFIID riid, void** result) {
    return made_items->QueryInterface(riid, result);
}

void WINAPI note_freed(void* memory) {
    freed.push_back(memory);
    static auto* const real = test::unpatched<decltype(CoTaskMemFree)>(L"ole32.dll", "CoTaskMemFree");
    real(memory);
}

HRESULT WINAPI note_elevation(LPCWSTR, BIND_OPTS*, REFIID, void** result) {
    ++elevations;
    *result = nullptr;
    return E_ACCESSDENIED;
}

ULONG references(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

class SelectedEntry : public testing::Test {
  protected:
    SelectedEntry() {
        made_items = items.Get();
        freed.clear();
        elevations = 0;
    }

    bool find() {
        selected_entry entry;
        return entry.find(selection.Get());
    }

    template <class Menu>
    HRESULT invoke_open() {
        const auto menu = com::adopt(com::make_object<Menu>());
        menu->Initialize(nullptr, selection.Get(), nullptr);
        CMINVOKECOMMANDINFO info{};
        info.cbSize = sizeof info;
        return menu->InvokeCommand(&info);
    }

    ComPtr<fake_items> items = com::adopt(com::make_object<fake_items>());
    ComPtr<test::data_object> selection = com::adopt(com::make_object<test::data_object>());

  private:
    import_patch<decltype(SHCreateShellItemArrayFromDataObject)> array_{
        GetModuleHandleW(nullptr), "shell32.dll", "SHCreateShellItemArrayFromDataObject", make_items};
    import_patch<decltype(CoTaskMemFree)> free_{GetModuleHandleW(nullptr), "ole32.dll", "CoTaskMemFree",
                                                note_freed};
    import_patch<decltype(CoGetObject)> prompt_{GetModuleHandleW(nullptr), "ole32.dll", "CoGetObject",
                                                note_elevation};
};

TEST_F(SelectedEntry, first_item_is_asked_for_its_normal_name) {
    EXPECT_TRUE(find());
    EXPECT_EQ(items->asked_for, std::vector<DWORD>{0});
    EXPECT_EQ(items->item->asked_for, std::vector<SIGDN>{SIGDN_NORMALDISPLAY});
}

TEST_F(SelectedEntry, name_and_references_are_given_back) {
    EXPECT_TRUE(find());
    ASSERT_NE(items->item->handed_out, nullptr);
    EXPECT_THAT(freed, testing::Contains(items->item->handed_out));
    EXPECT_EQ(references(items.Get()), 1U);
    EXPECT_EQ(references(items->item.Get()), 1U);
}

TEST_F(SelectedEntry, item_that_cannot_be_had_is_not_found) {
    items->item_answer = some_failure;
    EXPECT_FALSE(find());
    EXPECT_TRUE(items->item->asked_for.empty());
    EXPECT_EQ(references(items.Get()), 1U);
}

TEST_F(SelectedEntry, name_that_cannot_be_had_is_not_found) {
    items->item->name_answer = some_failure;
    EXPECT_FALSE(find());
    EXPECT_EQ(references(items.Get()), 1U);
    EXPECT_EQ(references(items->item.Get()), 1U);
}

TEST_F(SelectedEntry, command_without_its_entry_ends_quietly) {
    test::message_box_script boxes(GetModuleHandleW(nullptr), {});
    items->item_answer = some_failure;
    EXPECT_EQ(invoke_open<OrvAddonsCtxMenu>(), S_OK);
    EXPECT_EQ(invoke_open<OrvRestoreCtxMenu>(), S_OK);
    items->item_answer = S_OK;
    items->item->name_answer = some_failure;
    EXPECT_EQ(invoke_open<OrvAddonsCtxMenu>(), S_OK);
    EXPECT_EQ(invoke_open<OrvRestoreCtxMenu>(), S_OK);
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_EQ(elevations, 0);

    items->item->name_answer = S_OK;
    EXPECT_EQ(invoke_open<OrvRestoreCtxMenu>(), S_OK);
    EXPECT_EQ(elevations, 1) << "with its entry the command goes on to ask for consent";
}

}  // namespace
}  // namespace ov::shell
