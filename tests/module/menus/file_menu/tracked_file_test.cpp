#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <iterator>

#include "ovufc/ipc/drvport/wire.h"
#include "testkit/checks/fake_dialog_library.h"
#include "tests/module/menus/file_menu/tracked_file_fixture.h"

namespace ov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto get_file_chronels = service_call::get_file_chronels;
constexpr const char* chronel_list = R"({"chronels":[{"fileName":"a"}]})";
constexpr const char* chronel = R"({"cloneFileName":"clone","fileName":"used","type":3})";

class TrackedFileMenu : public tracked_file_fixture {};

// What the item was inserted with: a popup without a menu cannot be read back everywhere.
struct insert_call {
    UINT position;
    UINT flags;
    UINT_PTR id;
    std::wstring text;
};
std::vector<insert_call> inserts;
std::vector<std::array<HBITMAP, 2>> bitmaps;

class recorded_menu {
  public:
    explicit recorded_menu(HMODULE module)
        : insert_(module, "user32.dll", "InsertMenuW",
                  [](HMENU, UINT position, UINT flags, UINT_PTR id, LPCWSTR text) WINAPI -> BOOL {
                      inserts.push_back({position, flags, id, text});
                      return TRUE;
                  }),
          bitmaps_(module, "user32.dll", "SetMenuItemBitmaps",
                   [](HMENU, UINT, UINT, HBITMAP unchecked, HBITMAP checked) WINAPI -> BOOL {
                       bitmaps.push_back({unchecked, checked});
                       return TRUE;
                   }) {
        inserts.clear();
        bitmaps.clear();
    }

  private:
    import_patch<decltype(InsertMenuW)> insert_;
    import_patch<decltype(SetMenuItemBitmaps)> bitmaps_;
};

TEST_F(TrackedFileMenu, file_has_one_item_with_the_popup_flag_and_a_command_number) {
    const auto menu = file_menu();
    const recorded_menu recorded(module_.handle());
    EXPECT_EQ(menu->QueryContextMenu(nullptr, 4, 100, 0x7FFF, CMF_NORMAL), 1);
    ASSERT_EQ(inserts.size(), 1U);
    EXPECT_EQ(inserts[0].position, 4U);
    EXPECT_EQ(inserts[0].flags, 0x410U);
    EXPECT_EQ(inserts[0].id, 100U);
    EXPECT_EQ(inserts[0].text, message_texts::of(0x40019));
    ASSERT_EQ(bitmaps.size(), 1U);
    EXPECT_NE(bitmaps[0][0], nullptr);
    EXPECT_EQ(bitmaps[0][1], bitmaps[0][0]);
    EXPECT_THAT(sent(), IsEmpty()) << "a file is not asked about";
}

TEST_F(TrackedFileMenu, hosts_menu_holds_the_item) {
    const auto menu = file_menu();
    const queried_menu queried(menu.Get(), CMF_NORMAL);
    ASSERT_EQ(queried.added.size(), 1U);
    EXPECT_EQ(queried.added[0].text, message_texts::of(0x40019));
    EXPECT_EQ(queried.added[0].id, queried_menu::first_id);
    EXPECT_EQ(queried.added[0].state, 0U);
    EXPECT_NE(queried.added[0].unchecked_bitmap, nullptr);
}

// Wine inserts whatever it is asked to: the refusal is put in its place.
TEST_F(TrackedFileMenu, item_that_cannot_be_inserted_leaves_the_hosts_item_with_its_own_bitmaps) {
    const auto menu = file_menu();
    const import_patch<decltype(InsertMenuW)> refusal(module_.handle(), "user32.dll", "InsertMenuW",
                                                      [](HMENU, UINT, UINT, UINT_PTR, LPCWSTR)
                                                          WINAPI -> BOOL { return FALSE; });
    const HMENU host = CreatePopupMenu();
    AppendMenuW(host, MF_STRING, 1, L"the host's own");
    EXPECT_EQ(menu->QueryContextMenu(host, 0, 100, 0x7FFF, CMF_NORMAL), 1);
    const auto items = read_menu(host);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].unchecked_bitmap, nullptr);
    EXPECT_EQ(items[0].checked_bitmap, nullptr);
    DestroyMenu(host);
}

TEST_F(TrackedFileMenu, driver_that_serves_nothing_greys_the_item) {
    service_.set_state(0);
    const auto menu = file_menu();
    const recorded_menu recorded(module_.handle());
    EXPECT_EQ(menu->QueryContextMenu(nullptr, 0, 100, 0x7FFF, CMF_NORMAL), 1);
    ASSERT_EQ(inserts.size(), 1U);
    EXPECT_EQ(inserts[0].flags, 0x411U);
}

TEST_F(TrackedFileMenu, restriction_in_the_status_block_hides_the_item) {
    service_.set_flags(ORV_FLAG_UI_RESTRICTED);
    EXPECT_EQ(queried_menu(file_menu().Get(), CMF_NORMAL).result, 0);
}

TEST_F(TrackedFileMenu, other_bits_do_not_hide_it) {
    service_.set_flags(~ORV_FLAG_UI_RESTRICTED);
    EXPECT_EQ(queried_menu(file_menu().Get(), CMF_NORMAL).result, 1);
}

TEST_F(TrackedFileMenu, hosts_that_want_other_menus_get_nothing) {
    const auto menu = file_menu();
    for (const UINT flags : std::initializer_list<UINT>{CMF_DEFAULTONLY, CMF_EXTENDEDVERBS, 0x800}) {
        EXPECT_EQ(queried_menu(menu.Get(), flags).result, 0);
    }
}

TEST_F(TrackedFileMenu, two_tracked_files_get_nothing) {
    const auto other = folder_.make_file(L"other.txt");
    EXPECT_EQ(queried_menu(menu_on(select_paths({file_, other}).Get()).Get(), CMF_NORMAL).result, 0);
}

TEST_F(TrackedFileMenu, folder_after_a_file_is_a_folder_again) {
    reply_folder_status(true);
    const auto menu = file_menu();
    ASSERT_EQ(initialize(menu.Get(), select_paths({folder_.path()}).Get()), S_OK);
    EXPECT_EQ(queried_menu(menu.Get(), CMF_NORMAL).submenu.size(), 2U);
}

// The chronel dialog's flow.
class ChronelFlow : public tracked_file_fixture {
  protected:
    ChronelFlow() { reply_with_file(get_file_chronels, chronel_list); }

    /// The dialog answers with `action`, `identifier` and `file_name`.
    void answer(std::uint32_t action, const std::string& identifier, const std::wstring& file_name = {}) {
        dialogs_.chronels = [=](const dialog::ChronelDialogRequest&, dialog::ChronelDialogResult& result) {
            result.size_bytes = sizeof result;
            result.action = action;
            std::strncpy(result.chronel_identifier, identifier.c_str(), sizeof result.chronel_identifier - 1);
            std::wcsncpy(result.file_name, file_name.c_str(), std::size(result.file_name) - 1);
            return 1;
        };
    }

    std::string list_request() const {
        std::array<wchar_t, MAX_PATH + 1> temp{};
        GetTempPathW(MAX_PATH + 1, temp.data());
        return request_text(get_file_chronels, R"({"fileName":)" + json_text(file_) + R"(,"tempFolder":)" +
                                                   json_text(temp.data()) + "}");
    }
    std::string chronel_request(service_call call, const std::string& used) const {
        return request_text(call, R"({"chronelType":3,"cloneFileName":"clone","fileName":)" +
                                      json_text(file_) + R"(,"usedFileName":)" + used + "}");
    }

    fake_dialog_library dialogs_{module_.handle()};
};

TEST_F(ChronelFlow, dialog_is_shown_the_list_as_the_driver_wrote_it) {
    std::string shown_list;
    std::wstring shown_file;
    HICON shown_icon = nullptr;
    dialogs_.chronels = [&](const dialog::ChronelDialogRequest& request,
                            dialog::ChronelDialogResult& result) {
        EXPECT_EQ(request.size_bytes, 32U);
        shown_list = request.chronel_list;
        shown_file = request.file_path;
        shown_icon = request.menu_icon;
        result.size_bytes = sizeof result;
        return 1;
    };
    const auto menu = file_menu();
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_EQ(shown_list, chronel_list);
    EXPECT_EQ(shown_file, file_);
    EXPECT_NE(shown_icon, nullptr);
    EXPECT_THAT(sent(), ElementsAre(list_request())) << "action 0 does nothing";
    EXPECT_THAT(dialogs_.events(), ElementsAre("load", "find 47", "show 47", "free"));
}

TEST_F(ChronelFlow, verb_is_not_looked_at) {
    answer(9, chronel);
    const auto menu = file_menu();
    for (const UINT_PTR verb : {UINT_PTR{7}, UINT_PTR{0x10000}, reinterpret_cast<UINT_PTR>("verb")}) {
        reply_with_file(get_file_chronels, chronel_list);
        EXPECT_EQ(invoke(menu.Get(), verb), S_OK);
    }
    EXPECT_EQ(menu->InvokeCommand(nullptr), E_INVALIDARG);
}

TEST_F(ChronelFlow, restore_is_sent_for_actions_two_and_three) {
    for (const std::uint32_t action : {2U, 3U}) {
        answer(action, chronel, L"not used");
        const auto menu = file_menu();
        EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
        EXPECT_THAT(sent(), ElementsAre(list_request(),
                                        chronel_request(service_call::restore_file_chronel, R"("used")")));
        reply_with_file(get_file_chronels, chronel_list);
    }
}

TEST_F(ChronelFlow, open_is_sent_under_the_dialogs_file_name) {
    answer(1, chronel, L"opened \u00e4.docx");
    const auto menu = file_menu();
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_THAT(sent(), ElementsAre(list_request(), chronel_request(service_call::open_file_chronel,
                                                                    json_text(L"opened \u00e4.docx"))));
}

TEST_F(ChronelFlow, other_actions_send_nothing) {
    for (const std::uint32_t action : {0U, 4U, 0xFFFFFFFFU}) {
        reply_with_file(get_file_chronels, chronel_list);
        answer(action, chronel);
        const auto menu = file_menu();
        EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
        EXPECT_THAT(sent(), ElementsAre(list_request()));
    }
}

TEST_F(ChronelFlow, failure_of_the_chosen_action_is_not_passed_on) {
    answer(2, chronel);
    reply(service_call::restore_file_chronel, R"({"data":{},"statusCode":5})");
    EXPECT_EQ(invoke(file_menu().Get(), 0), S_OK);
}

TEST_F(ChronelFlow, empty_list_is_unexpected_and_shows_no_dialog) {
    reply(get_file_chronels, R"({"data":{},"statusCode":0})");
    EXPECT_EQ(invoke(file_menu().Get(), 0), E_UNEXPECTED);
    reply(get_file_chronels, R"({"data":{},"statusCode":5})");
    EXPECT_EQ(invoke(file_menu().Get(), 0), E_UNEXPECTED);
    service_.set_state(0);
    EXPECT_EQ(invoke(file_menu().Get(), 0), E_UNEXPECTED);
    EXPECT_THAT(dialogs_.events(), IsEmpty());
}

TEST_F(ChronelFlow, cancelled_dialog_is_unexpected) {
    EXPECT_EQ(invoke(file_menu().Get(), 0), E_UNEXPECTED);
    EXPECT_THAT(dialogs_.events(), ElementsAre("load", "find 47", "show 47", "free"));
    EXPECT_THAT(sent(), ElementsAre(list_request()));
}

TEST_F(ChronelFlow, result_of_another_size_is_unexpected) {
    dialogs_.chronels = [](const dialog::ChronelDialogRequest&, dialog::ChronelDialogResult& result) {
        result.size_bytes = sizeof result - 1;
        result.action = 2;
        std::strcpy(result.chronel_identifier, chronel);
        return 1;
    };
    EXPECT_EQ(invoke(file_menu().Get(), 0), E_UNEXPECTED);
    EXPECT_THAT(sent(), ElementsAre(list_request()));
}

TEST_F(ChronelFlow, missing_library_or_export_is_ok) {
    dialogs_.is_missing = true;
    EXPECT_EQ(invoke(file_menu().Get(), 0), S_OK);
    dialogs_.is_missing = false;
    dialogs_.has_no_exports = true;
    reply_with_file(get_file_chronels, chronel_list);
    EXPECT_EQ(invoke(file_menu().Get(), 0), S_OK);
    EXPECT_THAT(dialogs_.events(), ElementsAre("load", "load", "find 47", "free"));
}

TEST_F(ChronelFlow, identifier_that_is_not_json_is_unexpected_with_nothing_sent_and_the_library_freed) {
    for (const std::uint32_t action : {1U, 2U, 3U}) {
        for (const char* identifier : {"", "{", "not json", "{\"fileName\":}"}) {
            reply_with_file(get_file_chronels, chronel_list);
            answer(action, identifier, L"name");
            const auto menu = file_menu();
            (void)sent();
            EXPECT_EQ(invoke(menu.Get(), 0), E_UNEXPECTED) << identifier;
            EXPECT_THAT(sent(), ElementsAre(list_request()));
            EXPECT_EQ(dialogs_.events().back(), "free");
        }
    }
}

TEST_F(ChronelFlow, identifier_without_its_members_sends_null_for_them) {
    answer(2, "{}");
    EXPECT_EQ(invoke(file_menu().Get(), 0), S_OK);
    EXPECT_THAT(sent(), ElementsAre(list_request(),
                                    request_text(service_call::restore_file_chronel,
                                                 R"({"chronelType":null,"cloneFileName":null,"fileName":)" +
                                                     json_text(file_) + R"(,"usedFileName":null})")));
}

TEST_F(ChronelFlow, identifier_without_a_terminator_does_not_crash) {
    dialogs_.chronels = [](const dialog::ChronelDialogRequest&, dialog::ChronelDialogResult& result) {
        std::memset(&result, '[', sizeof result);  // 16384 levels deep, and no end
        result.size_bytes = sizeof result;
        result.action = 2;
        return 1;
    };
    EXPECT_EQ(invoke(file_menu().Get(), 0), E_UNEXPECTED);
}

TEST_F(ChronelFlow, dialogs_library_is_still_there_while_the_action_is_sent) {
    answer(2, chronel);
    bool freed_before_sending = true;
    service_.set_answer([&](const scripted_request& request) -> scripted_reply {
        if (request.text.find("\"serviceCall\":42") != std::string::npos) {
            freed_before_sending = dialogs_.events().back() == "free";
            return R"({"data":{},"statusCode":0})";
        }
        return R"({"data":{"objPath":)" + json_text(folder_.path() + L"\\reply46.json") +
               R"(},"statusCode":0})";
    });
    EXPECT_EQ(invoke(file_menu().Get(), 0), S_OK);
    EXPECT_EQ(sent().size(), 2U);
    EXPECT_FALSE(freed_before_sending);
}

}  // namespace
}  // namespace ov::test
