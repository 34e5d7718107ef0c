#include "tools/stand_ins/menus/merged_menu.h"

#include <gtest/gtest.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tools/shellhost/menus/menu_query.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

constexpr UINT first_id = 100;
constexpr UINT last_id = 0x7FFF;

menu_source source_of(const std::wstring& name, handler_record& record, bool serves_default = false,
                      bool leads = false) {
    return {name, serves_default, leads, [&record](IContextMenu** menu) -> HRESULT {
                *menu = com::make_object<recording_handler>(record);
                return S_OK;
            }};
}

class MergedMenu : public testing::Test {
  protected:
    MergedMenu() : popup(CreatePopupMenu()) {}

    void make(std::vector<menu_source> sources) {
        ASSERT_EQ(make_merged_menu(std::move(sources), IID_PPV_ARGS(menu.ReleaseAndGetAddressOf())), S_OK);
        ASSERT_EQ(menu.As(&merged), S_OK);
    }
    HRESULT query(UINT flags = CMF_NORMAL) {
        return menu->QueryContextMenu(popup.get(), 0, first_id, last_id, flags);
    }
    std::vector<std::wstring> texts() const {
        std::vector<std::wstring> all;
        for (const auto& item : shellhost::read_menu(popup.get(), first_id, nullptr)) {
            all.push_back(item.is_separator ? L"--" : item.text);
        }
        return all;
    }
    HRESULT invoke(UINT offset) {
        CMINVOKECOMMANDINFOEX info{};
        info.cbSize = sizeof info;
        info.lpVerb = MAKEINTRESOURCEA(offset);
        return menu->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info));
    }
    HRESULT invoke(const char* verb) {
        CMINVOKECOMMANDINFO info{};
        info.cbSize = sizeof info;
        info.lpVerb = verb;
        return menu->InvokeCommand(&info);
    }

    test_apartment apartment;
    handler_record one;
    handler_record two;
    win::unique_menu popup;
    ComPtr<IContextMenu> menu;
    ComPtr<IMergedMenu> merged;
};

TEST_F(MergedMenu, two_sources_stand_behind_each_other_with_ids_in_order) {
    two.texts = {L"Third"};
    make({source_of(L"one", one), source_of(L"two", two)});
    EXPECT_EQ(query(), MAKE_HRESULT(SEVERITY_SUCCESS, 0, 3));
    EXPECT_EQ(texts(), (std::vector<std::wstring>{L"First", L"Second", L"Third"}));
    EXPECT_EQ(GetMenuItemID(popup.get(), 2), first_id + 2);
}

TEST_F(MergedMenu, command_goes_back_to_its_source_with_its_own_offset) {
    make({source_of(L"one", one), source_of(L"two", two)});
    (void)query();
    EXPECT_EQ(invoke(3U), S_OK);
    EXPECT_TRUE(one.invoked.empty());
    EXPECT_EQ(two.invoked, std::vector<UINT>{1});
    EXPECT_EQ(invoke(4U), E_INVALIDARG);
}

TEST_F(MergedMenu, verb_as_text_goes_to_the_part_that_names_it) {
    two.verb = L"roll-back";
    make({source_of(L"one", one), source_of(L"two", two)});
    (void)query();
    EXPECT_EQ(invoke("ROLL-BACK"), S_OK);
    EXPECT_TRUE(one.invoked.empty());
    EXPECT_EQ(two.invoked, std::vector<UINT>{0});
    EXPECT_EQ(invoke("nobody's"), E_INVALIDARG);
}

TEST_F(MergedMenu, refusing_source_has_no_share_and_stops_nobody) {
    one.query_result = E_FAIL;
    make({source_of(L"one", one), source_of(L"two", two)});
    EXPECT_EQ(query(), MAKE_HRESULT(SEVERITY_SUCCESS, 0, 2));
    EXPECT_EQ(merged->parts()[0].query_result, E_FAIL);
    EXPECT_EQ(invoke(0U), S_OK);
    EXPECT_EQ(two.invoked, std::vector<UINT>{0});
}

TEST_F(MergedMenu, source_that_cannot_be_opened_is_reported) {
    make({{L"gone", false, false, [](IContextMenu**) { return REGDB_E_CLASSNOTREG; }},
          source_of(L"two", two)});
    EXPECT_EQ(query(), MAKE_HRESULT(SEVERITY_SUCCESS, 0, 2));
    ASSERT_EQ(merged->parts().size(), 2U);
    EXPECT_EQ(merged->parts()[0].open_result, REGDB_E_CLASSNOTREG);
    EXPECT_EQ(merged->parts()[0].query_result, E_PENDING);
}

TEST_F(MergedMenu, default_only_opens_only_the_sources_for_it) {
    make({source_of(L"one", one), source_of(L"two", two, true)});
    EXPECT_EQ(query(CMF_DEFAULTONLY), MAKE_HRESULT(SEVERITY_SUCCESS, 0, 2));
    EXPECT_TRUE(one.flags.empty());
    EXPECT_EQ(two.flags, std::vector<UINT>{CMF_DEFAULTONLY});
    EXPECT_EQ(GetMenuDefaultItem(popup.get(), FALSE, 0), first_id);
}

TEST_F(MergedMenu, leading_source_keeps_its_first_group_together) {
    menu_source lead{L"system", false, true, {}};
    lead.open = [](IContextMenu** made) -> HRESULT {
        class system_menu final
            : public com::com_object<
                  system_menu, com::bases<IContextMenu>,
                  com::answers<com::answer<IUnknown, IContextMenu>, com::answer<IContextMenu>>> {
          public:
            virtual ~system_menu() = default;
            STDMETHODIMP
            QueryContextMenu(HMENU menu, UINT index, UINT first, UINT, UINT) noexcept override {
                InsertMenuW(menu, index, MF_BYPOSITION, first, L"Open");
                InsertMenuW(menu, index + 1, MF_BYPOSITION | MF_SEPARATOR, 0, nullptr);
                InsertMenuW(menu, index + 2, MF_BYPOSITION, first + 1, L"Cut");
                return MAKE_HRESULT(SEVERITY_SUCCESS, 0, 2);
            }
            STDMETHODIMP
            InvokeCommand(CMINVOKECOMMANDINFO*) noexcept override { return S_OK; }
            STDMETHODIMP
            GetCommandString(UINT_PTR, UINT, UINT*, LPSTR, UINT) noexcept override { return E_NOTIMPL; }
        };
        *made = com::make_object<system_menu>();
        return S_OK;
    };
    make({lead, source_of(L"two", two)});
    (void)query();
    EXPECT_EQ(texts(), (std::vector<std::wstring>{L"Open", L"--", L"First", L"Second", L"--", L"Cut"}));
    EXPECT_EQ(invoke(2U), S_OK);
    EXPECT_EQ(two.invoked, std::vector<UINT>{0});
}

TEST_F(MergedMenu, released_menu_releases_its_parts) {
    make({source_of(L"one", one)});
    (void)query();
    EXPECT_EQ(one.alive, 1);
    (void)query();
    EXPECT_EQ(one.alive, 1);
    merged.Reset();
    menu.Reset();
    EXPECT_EQ(one.alive, 0);
}

TEST_F(MergedMenu, command_string_comes_from_the_part) {
    two.verb = L"roll-back";
    make({source_of(L"one", one), source_of(L"two", two)});
    (void)query();
    wchar_t verb[32] = {};
    EXPECT_EQ(menu->GetCommandString(2, GCS_VERBW, nullptr, reinterpret_cast<LPSTR>(verb), 32), S_OK);
    EXPECT_STREQ(verb, L"roll-back");
    EXPECT_EQ(menu->GetCommandString(9, GCS_VERBW, nullptr, reinterpret_cast<LPSTR>(verb), 32), E_INVALIDARG);
}

TEST_F(MergedMenu, bad_arguments_are_refused) {
    make({source_of(L"one", one)});
    EXPECT_EQ(menu->QueryContextMenu(nullptr, 0, 1, 2, 0), E_INVALIDARG);
    EXPECT_EQ(menu->QueryContextMenu(popup.get(), 0, 5, 4, 0), E_INVALIDARG);
    EXPECT_EQ(menu->InvokeCommand(nullptr), E_INVALIDARG);
}

}  // namespace
}  // namespace ov::stand_ins
