#include "shell/entry_menus/entry_ctx_menu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "ovufc/com/adopt.h"
#include "ovufc/win/ui_handle.h"
#include "shell/entry_menus/orv_addons_ctx_menu.h"
#include "shell/entry_menus/orv_restore_ctx_menu.h"
#include "testkit/files/temp_folder.h"
#include "testkit/process/module_attach.h"
#include "testkit/shell/data_object.h"
#include "testkit/shell/menu_reader.h"

namespace ov::shell {
namespace {

using Microsoft::WRL::ComPtr;
using test::menu_item;
using testing::ElementsAre;

/// An entry whose command counts, and may throw.
class CountingEntry final : public EntryCtxMenu {
  public:
    int runs = 0;
    bool throws = false;

  private:
    [[nodiscard]] const wchar_t* verb_text() const noexcept override { return L"Count"; }
    void run() override {
        ++runs;
        if (throws) {
            throw std::runtime_error("from a command");
        }
    }
};

HRESULT invoke(IContextMenu* menu, const char* verb) {
    CMINVOKECOMMANDINFO info{};
    info.cbSize = sizeof info;
    info.lpVerb = verb;
    return menu->InvokeCommand(&info);
}

class EntryMenu : public testing::Test {
  protected:
    EntryMenu() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~EntryMenu() override { CoUninitialize(); }

    ComPtr<CountingEntry> entry_ = com::adopt(com::make_object<CountingEntry>());
    test::temp_folder folder_;
    ComPtr<test::data_object> selection_ = test::select_items({folder_.path()});
};

template <class Entry>
std::vector<menu_item> default_items(UINT flags, HRESULT expected) {
    const auto entry = com::adopt(com::make_object<Entry>());
    const win::unique_menu menu(CreatePopupMenu());
    AppendMenuW(menu.get(), MF_STRING, 1, L"before");
    AppendMenuW(menu.get(), MF_STRING, 2, L"after");
    EXPECT_EQ(entry->QueryContextMenu(menu.get(), 1, 50, 60, flags), expected);
    return test::read_menu(menu.get());
}

TEST_F(EntryMenu, verb_is_added_at_its_position_for_the_default_verb_only) {
    for (const UINT flags : {0x1U, 0x21U, 0x901U}) {
        EXPECT_THAT(default_items<OrvRestoreCtxMenu>(flags, 1),
                    ElementsAre(menu_item{L"before", 1}, menu_item{L"Restore", 50}, menu_item{L"after", 2}));
        EXPECT_THAT(default_items<OrvAddonsCtxMenu>(flags, 1),
                    ElementsAre(menu_item{L"before", 1}, menu_item{L"Open", 50}, menu_item{L"after", 2}));
    }
}

TEST_F(EntryMenu, right_click_adds_nothing) {
    for (const UINT flags : {0x0U, 0x2U, 0x4U, 0x10U, 0x100U, 0x800U}) {
        EXPECT_EQ(default_items<OrvRestoreCtxMenu>(flags, 0).size(), 2U);
        EXPECT_EQ(default_items<OrvAddonsCtxMenu>(flags, 0).size(), 2U);
    }
}

TEST_F(EntryMenu, verb_other_than_offset_zero_is_refused) {
    entry_->Initialize(nullptr, selection_.Get(), nullptr);
    EXPECT_EQ(entry_->InvokeCommand(nullptr), E_INVALIDARG);
    EXPECT_EQ(invoke(entry_.Get(), MAKEINTRESOURCEA(1)), E_INVALIDARG);
    EXPECT_EQ(invoke(entry_.Get(), "open"), E_INVALIDARG);
    EXPECT_EQ(invoke(entry_.Get(), reinterpret_cast<const char*>(0x10000)), E_INVALIDARG) << "high word 1";
    EXPECT_EQ(entry_->runs, 0);
    EXPECT_EQ(invoke(entry_.Get(), MAKEINTRESOURCEA(0)), S_OK);
    EXPECT_EQ(entry_->runs, 1);
}

TEST_F(EntryMenu, command_that_throws_is_still_ok) {
    entry_->Initialize(nullptr, selection_.Get(), nullptr);
    entry_->throws = true;
    EXPECT_EQ(invoke(entry_.Get(), nullptr), S_OK);
    EXPECT_EQ(entry_->runs, 1);
}

TEST_F(EntryMenu, without_a_selected_item_the_command_does_not_run) {
    EXPECT_EQ(invoke(entry_.Get(), nullptr), S_OK) << "never initialised";
    entry_->Initialize(nullptr, nullptr, nullptr);
    EXPECT_EQ(invoke(entry_.Get(), nullptr), S_OK);
    selection_->answer = E_FAIL;
    entry_->Initialize(nullptr, selection_.Get(), nullptr);
    EXPECT_EQ(invoke(entry_.Get(), nullptr), S_OK) << "no item array to be had";
    EXPECT_EQ(entry_->runs, 0);
}

TEST_F(EntryMenu, selection_is_referenced_until_replaced_or_released) {
    const auto other = test::select_items({folder_.path()});
    EXPECT_EQ(entry_->Initialize(nullptr, selection_.Get(), nullptr), S_OK);
    EXPECT_EQ(selection_->references(), 2U);
    EXPECT_EQ(entry_->Initialize(nullptr, other.Get(), nullptr), S_OK);
    EXPECT_EQ(selection_->references(), 1U);
    EXPECT_EQ(other->references(), 2U);
    entry_.Reset();
    EXPECT_EQ(other->references(), 1U);
}

TEST_F(EntryMenu, command_leaves_no_reference_behind) {
    entry_->Initialize(nullptr, selection_.Get(), nullptr);
    ASSERT_EQ(invoke(entry_.Get(), nullptr), S_OK);
    ASSERT_EQ(entry_->runs, 1);
    EXPECT_EQ(selection_->references(), 2U);
}

TEST_F(EntryMenu, command_strings_are_not_implemented) {
    wchar_t text[8] = L"kept";
    for (const UINT type :
         {GCS_VERBA, GCS_HELPTEXTA, GCS_VALIDATEA, GCS_VERBW, GCS_HELPTEXTW, GCS_VALIDATEW}) {
        EXPECT_EQ(entry_->GetCommandString(0, type, nullptr, reinterpret_cast<LPSTR>(text), 8), E_NOTIMPL);
    }
    EXPECT_STREQ(text, L"kept");
}

TEST_F(EntryMenu, site_is_kept_replaced_and_given_back) {
    ComPtr<IObjectWithSite> sited;
    ASSERT_EQ(entry_->QueryInterface(IID_PPV_ARGS(&sited)), S_OK);
    void* found = reinterpret_cast<void*>(0x5A);
    EXPECT_EQ(sited->GetSite(IID_IUnknown, &found), E_FAIL);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(sited->GetSite(IID_IUnknown, nullptr), E_POINTER);

    EXPECT_EQ(sited->SetSite(selection_.Get()), S_OK);
    EXPECT_EQ(selection_->references(), 2U);
    ComPtr<IDataObject> site;
    EXPECT_EQ(sited->GetSite(IID_PPV_ARGS(&site)), S_OK);
    EXPECT_EQ(site.Get(), selection_.Get());
    site.Reset();
    EXPECT_EQ(sited->GetSite(IID_IStream, &found), E_NOINTERFACE);

    EXPECT_EQ(sited->SetSite(nullptr), S_OK);
    EXPECT_EQ(selection_->references(), 1U);
    EXPECT_EQ(sited->GetSite(IID_IUnknown, &found), E_FAIL);
}

TEST_F(EntryMenu, interfaces_are_the_three) {
    ComPtr<IUnknown> unknown;
    ASSERT_EQ(entry_->QueryInterface(IID_PPV_ARGS(&unknown)), S_OK);
    EXPECT_EQ(static_cast<void*>(unknown.Get()), static_cast<IContextMenu*>(entry_.Get()));
    ComPtr<IContextMenu> menu;
    EXPECT_EQ(entry_->QueryInterface(IID_PPV_ARGS(&menu)), S_OK);
    ComPtr<IShellExtInit> init;
    EXPECT_EQ(entry_->QueryInterface(IID_PPV_ARGS(&init)), S_OK);
    void* other = reinterpret_cast<void*>(0x5A);
    EXPECT_EQ(entry_->QueryInterface(IID_IContextMenu2, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(entry_->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

}  // namespace
}  // namespace ov::shell
