#include <gmock/gmock.h>

#include <shellapi.h>

#include <cwchar>

#include "module/state/class_ids.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/checks/fake_dialog_library.h"
#include "testkit/checks/message_box_script.h"
#include "testkit/shell/box_presser.h"
#include "tests/module/menus/menus_fixture.h"

namespace ov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* refused = R"({"data":{},"statusCode":5})";

class FolderCommands : public menus_fixture {
  protected:
    FolderCommands() { reply_folder_status(true); }

    /// A menu on the folder; what it asked while it was initialised is forgotten.
    Microsoft::WRL::ComPtr<IContextMenu> folder_menu() {
        auto menu = menu_on(folder_.path());
        (void)sent();
        return menu;
    }
    std::string folder_name() const { return R"({"folderName":)" + json_text(folder_.path()); }
};

// Nothing but what a cast to half the width would lose.
constexpr UINT_PTR upper_half = UINT_PTR{1} << (sizeof(UINT_PTR) * 4);

TEST_F(FolderCommands, bad_verbs_are_refused) {
    const auto menu = folder_menu();
    EXPECT_EQ(menu->InvokeCommand(nullptr), E_INVALIDARG);
    for (const UINT_PTR verb : {UINT_PTR{4}, UINT_PTR{0xFFFF}, UINT_PTR{0x10000}, upper_half}) {
        EXPECT_EQ(invoke(menu.Get(), verb), E_INVALIDARG) << std::hex << verb;
    }
    EXPECT_EQ(invoke(menu.Get(), reinterpret_cast<UINT_PTR>("protect")), E_INVALIDARG);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderCommands, menu_without_a_selection_runs_nothing) {
    const auto menu = make_menu(class_ids::shell_extension);
    for (const UINT_PTR verb : {0, 1, 2, 3}) {
        EXPECT_EQ(invoke(menu.Get(), verb), E_INVALIDARG);
    }
    const auto on_file = menu_on(folder_.make_file(L"plain.txt"));
    EXPECT_EQ(invoke(on_file.Get(), 1), E_INVALIDARG);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderCommands, wide_form_runs_the_same_command) {
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto menu = folder_menu();
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof info;
    info.fMask = CMIC_MASK_UNICODE;
    info.lpVerb = MAKEINTRESOURCEA(3);
    info.lpVerbW = MAKEINTRESOURCEW(3);
    EXPECT_EQ(menu->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info)), S_OK);
    EXPECT_EQ(sent().size(), 1U);
}

TEST_F(FolderCommands, wide_name_beside_an_offset_is_not_looked_at) {
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto menu = folder_menu();
    CMINVOKECOMMANDINFOEX info{};
    info.cbSize = sizeof info;
    info.fMask = CMIC_MASK_UNICODE;
    info.lpVerb = MAKEINTRESOURCEA(3);
    info.lpVerbW = L"Export chronels";
    EXPECT_EQ(menu->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&info)), S_OK);
    EXPECT_EQ(sent().size(), 1U);
}

TEST_F(FolderCommands, protection_not_confirmed_sends_nothing) {
    fake_dialog_library dialogs(module_.handle());
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_THAT(dialogs.events(), ElementsAre("load", "find 17", "show 17", "free"));
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderCommands, protection_is_offered_with_unprotect) {
    fake_dialog_library dialogs(module_.handle());
    std::wstring shown_path;
    std::uint32_t shown_flags = 0;
    dialogs.protect = [&](const dialog::ProtectDialogRequest& request) {
        shown_path = request.folder_path;
        shown_flags = request.flags;
        return 0;
    };
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_EQ(shown_path, folder_.path());
    EXPECT_EQ(shown_flags, 0x80000000U);
    EXPECT_EQ(dialogs.loads().at(0).path, program_directory() + L"orvdialog.dll");
    EXPECT_EQ(dialogs.loads().at(0).flags, 0x1100U);
}

TEST_F(FolderCommands, protection_confirmed_is_sent) {
    fake_dialog_library dialogs(module_.handle());
    dialogs.protect = [](dialog::ProtectDialogRequest&) { return 1U; };
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_THAT(sent(), ElementsAre(request_text(service_call::protect_folder, folder_name() + "}")));
}

TEST_F(FolderCommands, protection_under_an_object_path_is_sent_with_it) {
    fake_dialog_library dialogs(module_.handle());
    dialogs.protect = [](dialog::ProtectDialogRequest& request) {
        std::wcscpy(request.object_path, L"D:\\\u00fcber\\x");
        return 7U;
    };
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_THAT(sent(), ElementsAre(request_text(
                            service_call::protect_folder_as,
                            folder_name() + R"(,"objPath":)" + json_text(L"D:\\\u00fcber\\x") + "}")));
}

TEST_F(FolderCommands, protection_that_fails_is_unexpected) {
    fake_dialog_library dialogs(module_.handle());
    reply(service_call::protect_folder, refused);
    reply(service_call::protect_folder_as, refused);
    bool with_path = false;
    dialogs.protect = [&](dialog::ProtectDialogRequest& request) {
        std::wcscpy(request.object_path, with_path ? L"D:\\x" : L"");
        return 1U;
    };
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 0), E_UNEXPECTED);
    with_path = true;
    EXPECT_EQ(invoke(menu.Get(), 0), E_UNEXPECTED);
}

TEST_F(FolderCommands, missing_dialog_library_does_nothing) {
    fake_dialog_library dialogs(module_.handle());
    const auto menu = folder_menu();
    dialogs.is_missing = true;
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    dialogs.is_missing = false;
    dialogs.has_no_exports = true;
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_THAT(dialogs.events(), ElementsAre("load", "load", "find 17", "free"));
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderCommands, unprotect_asks_then_sends) {
    message_box_script boxes(module_.handle(), {IDOK});
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
    ASSERT_EQ(boxes.shown().size(), 1U);
    EXPECT_EQ(boxes.shown()[0].owner, nullptr);
    EXPECT_EQ(boxes.shown()[0].text, message_texts::of(0x40003, folder_.path()));
    EXPECT_EQ(boxes.shown()[0].caption, message_texts::of(0));
    EXPECT_EQ(boxes.shown()[0].style, 0x50121U);
    EXPECT_THAT(sent(), ElementsAre(request_text(service_call::unprotect_folder, folder_name() + "}")));
}

TEST_F(FolderCommands, real_question_is_answered_by_its_buttons) {
    const auto menu = folder_menu();
    {
        box_presser presser({IDCANCEL});
        EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
        ASSERT_EQ(presser.finish().size(), 1U);
        EXPECT_EQ(presser.finish()[0].text, message_texts::of(0x40003, folder_.path()));
        EXPECT_EQ(presser.finish()[0].default_button, IDCANCEL);
        EXPECT_THAT(sent(), IsEmpty());
    }
    box_presser presser({IDOK});
    EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
    EXPECT_EQ(sent().size(), 1U);
}

TEST_F(FolderCommands, unprotect_not_confirmed_sends_nothing) {
    message_box_script boxes(module_.handle(), {IDCANCEL, 0});
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
    EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderCommands, unprotect_that_fails_is_unexpected_and_says_nothing) {
    message_box_script boxes(module_.handle(), {IDOK});
    reply(service_call::unprotect_folder, refused);
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 1), E_UNEXPECTED);
    EXPECT_EQ(boxes.shown().size(), 1U);
}

TEST_F(FolderCommands, blocked_unprotect_says_so_and_sends_nothing) {
    message_box_script boxes(module_.handle(), {IDOK});
    service_.set_flags(ORV_FLAG_UNPROTECT_BLOCKED);
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
    ASSERT_EQ(boxes.shown().size(), 1U);
    EXPECT_EQ(boxes.shown()[0].owner, nullptr);
    EXPECT_EQ(boxes.shown()[0].text, message_texts::of(0x4001A));
    EXPECT_EQ(boxes.shown()[0].caption, message_texts::of(0));
    EXPECT_EQ(boxes.shown()[0].style, 0x50030U);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(FolderCommands, block_on_unprotect_is_read_when_the_menu_is_initialised) {
    message_box_script boxes(module_.handle(), {IDCANCEL});
    const auto menu = folder_menu();
    service_.set_flags(ORV_FLAG_UNPROTECT_BLOCKED);
    EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
    EXPECT_EQ(boxes.shown().at(0).style, 0x50121U) << "the question, not the refusal";
}

TEST_F(FolderCommands, exports_are_sent_by_kind) {
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    const auto menu = folder_menu();
    const std::string folder_name = json_text(folder_.path());
    EXPECT_EQ(invoke(menu.Get(), 2), S_OK);
    EXPECT_THAT(sent(),
                ElementsAre(request_text(service_call::export_folder,
                                         R"({"exportType":"recycleBin","folderName":)" + folder_name + "}")));
    EXPECT_EQ(invoke(menu.Get(), 3), S_OK);
    EXPECT_THAT(sent(),
                ElementsAre(request_text(service_call::export_folder,
                                         R"({"exportType":"chronels","folderName":)" + folder_name + "}")));
}

TEST_F(FolderCommands, export_that_fails_is_still_ok) {
    service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    reply(service_call::export_folder, refused);
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 2), S_OK);
    EXPECT_EQ(invoke(menu.Get(), 3), S_OK);
    EXPECT_EQ(sent().size(), 2U);
}

TEST_F(FolderCommands, exports_that_are_not_available_are_not_sent) {
    const auto menu = folder_menu();
    EXPECT_EQ(invoke(menu.Get(), 2), S_OK);
    EXPECT_EQ(invoke(menu.Get(), 3), S_OK);
    EXPECT_THAT(sent(), IsEmpty());
}

}  // namespace
}  // namespace ov::test
