// What comes in wrong ends in a message that a person understands, and in "not confirmed".
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <memory>
#include <string>

#include "companions/orvdialog/chronels/chronel_list.h"
#include "companions/orvdialog/control_ids.h"
#include "testkit/memory/guarded_buffer.h"
#include "tests/unit/companions/orvdialog/window/shown_dialog.h"

namespace ov::dialog {
namespace {

const auto nowhere = reinterpret_cast<void*>(std::uintptr_t{0xCCCCCCCCCCCC});

class DialogLibrary : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(library.loaded());
        protect.size_bytes = sizeof protect;
        protect.folder_path = L"C:\\windows";
        chronels.size_bytes = sizeof chronels;
        chronels.file_path = L"C:\\Album\\sea.txt";
        chronels.chronel_list = R"([{"fileName":"a","cloneFileName":"1","type":"b"}])";
    }

    void expect_message(std::function<std::uint32_t()> call, const wchar_t* words) {
        shown_dialog shown(std::move(call));
        const HWND message = shown.window(L"Orvane Vaultkeep");
        EXPECT_THAT(texts_in(message), testing::HasSubstr(words));
        shown_dialog::press(message, IDOK);
        EXPECT_EQ(shown.result(), 0U);
    }
    void expect_protect_refused(ProtectDialogRequest* request) {
        expect_message([=, this] { return library.protect(request); }, L"request for it cannot be read");
    }
    void expect_chronels_refused(ChronelDialogRequest* request, ChronelDialogResult* to,
                                 const wchar_t* words = L"request for it cannot be read") {
        expect_message([=, this] { return library.chronels(request, to); }, words);
    }

    const dialog_library library;
    ProtectDialogRequest protect{};
    ChronelDialogRequest chronels{};
    const std::unique_ptr<ChronelDialogResult> result = std::make_unique<ChronelDialogResult>();
};

TEST_F(DialogLibrary, exports_are_the_two_ordinals_and_no_name) {
    EXPECT_NE(library.export_at(protect_ordinal), nullptr);
    EXPECT_NE(library.export_at(chronel_ordinal), nullptr);
    for (WORD ordinal = 1; ordinal < 100; ++ordinal) {
        if (ordinal != protect_ordinal && ordinal != chronel_ordinal) {
            EXPECT_EQ(library.export_at(ordinal), nullptr) << ordinal;
        }
    }
    EXPECT_EQ(GetProcAddress(GetModuleHandleW(L"orvdialog.dll"), "orv_show_protect_dialog"), nullptr);
}

TEST_F(DialogLibrary, protect_without_a_record_is_refused) {
    expect_protect_refused(nullptr);
    expect_protect_refused(static_cast<ProtectDialogRequest*>(nowhere));
}

TEST_F(DialogLibrary, protect_record_of_another_size_is_refused) {
    for (const std::uint32_t size : {0U, 543U, 545U, 0xFFFFFFFFU}) {
        protect.size_bytes = size;
        expect_protect_refused(&protect);
    }
}

TEST_F(DialogLibrary, protect_record_cut_by_a_page_is_refused) {
    const test::guarded_buffer memory(sizeof protect - 1);
    std::memcpy(memory.as<void>(), &protect, sizeof protect - 1);
    expect_protect_refused(memory.as<ProtectDialogRequest>());
}

TEST_F(DialogLibrary, protect_record_that_cannot_be_written_is_refused) {
    const test::guarded_buffer memory(sizeof protect);
    std::memcpy(memory.as<void>(), &protect, sizeof protect);
    memory.protect(PAGE_READONLY);
    expect_protect_refused(memory.as<ProtectDialogRequest>());
}

TEST_F(DialogLibrary, folder_that_is_no_text_is_refused) {
    protect.folder_path = nullptr;
    expect_protect_refused(&protect);
    protect.folder_path = static_cast<const wchar_t*>(nowhere);
    expect_protect_refused(&protect);
    protect.folder_path = L"";
    expect_protect_refused(&protect);
}

TEST_F(DialogLibrary, folder_without_end_is_refused) {
    const test::guarded_buffer memory(20);
    std::wmemset(memory.as<wchar_t>(), L'x', 10);
    protect.folder_path = memory.as<wchar_t>();
    expect_protect_refused(&protect);
}

TEST_F(DialogLibrary, folder_of_great_length_is_shown) {
    const std::wstring folder = L"C:\\" + std::wstring(32'000, L'x');
    protect.folder_path = folder.c_str();
    shown_dialog shown([this] { return library.protect(&protect); });
    const HWND window = shown.window(L"Orvane Vaultkeep - Protection");
    EXPECT_EQ(text_of(GetDlgItem(window, IDC_PROTECT_FOLDER)), folder);
    shown_dialog::press(window, IDCANCEL);
    EXPECT_EQ(shown.result(), 0U);
    EXPECT_STREQ(protect.object_path, L"");
}

TEST_F(DialogLibrary, chronels_without_records_are_refused) {
    expect_chronels_refused(nullptr, result.get());
    expect_chronels_refused(&chronels, nullptr);
    expect_chronels_refused(static_cast<ChronelDialogRequest*>(nowhere), result.get());
    expect_chronels_refused(&chronels, static_cast<ChronelDialogResult*>(nowhere));
}

TEST_F(DialogLibrary, chronel_record_of_another_size_is_refused) {
    for (const std::uint32_t size : {0U, 31U, 33U, 0xFFFFFFFFU}) {
        chronels.size_bytes = size;
        expect_chronels_refused(&chronels, result.get());
    }
}

TEST_F(DialogLibrary, result_cut_by_a_page_is_refused) {
    const test::guarded_buffer memory(sizeof(ChronelDialogResult) - 1);
    expect_chronels_refused(&chronels, memory.as<ChronelDialogResult>());
}

TEST_F(DialogLibrary, file_or_list_that_is_no_text_is_refused) {
    chronels.file_path = nullptr;
    expect_chronels_refused(&chronels, result.get());
    chronels.file_path = L"C:\\a";
    chronels.chronel_list = nullptr;
    expect_chronels_refused(&chronels, result.get());
    chronels.chronel_list = static_cast<const char*>(nowhere);
    expect_chronels_refused(&chronels, result.get());
}

TEST_F(DialogLibrary, list_without_end_is_refused) {
    const test::guarded_buffer memory(100);
    std::memset(memory.as<void>(), '[', 100);
    chronels.chronel_list = memory.as<char>();
    expect_chronels_refused(&chronels, result.get());
}

TEST_F(DialogLibrary, list_beyond_the_limit_is_refused) {
    const std::string list = "[" + std::string(longest_list_bytes, ' ') + "]";
    chronels.chronel_list = list.c_str();
    expect_chronels_refused(&chronels, result.get());
}

TEST_F(DialogLibrary, list_that_is_no_list_is_called_unreadable) {
    const std::string deep(1'000'000, '[');
    for (const char* list : {"", "nonsense", "{}", "[{]", "[\"\xff\"]", deep.c_str()}) {
        chronels.chronel_list = list;
        expect_chronels_refused(&chronels, result.get(), L"cannot be read");
    }
}

TEST_F(DialogLibrary, list_without_versions_says_that_there_are_none) {
    for (const char* list : {"[]", "[1,{}]", R"({"chronels":[]})"}) {
        chronels.chronel_list = list;
        expect_chronels_refused(&chronels, result.get(), L"No earlier versions");
    }
    EXPECT_EQ(result->size_bytes, 0U);
}

/// What a host may give its threads at least.
constexpr std::size_t small_stack_bytes = std::size_t{128} * 1024;

/// Calls with so much of the thread's stack left. (Wine makes no stack smaller than a mebibyte.)
[[gnu::noinline]] std::uint32_t on_small_stack(const std::function<std::uint32_t()>& call) {
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(&region, &region, sizeof region);
    const auto left_bytes = static_cast<std::size_t>(reinterpret_cast<std::byte*>(&region) -
                                                     static_cast<std::byte*>(region.AllocationBase));
    auto* const taken = static_cast<volatile char*>(__builtin_alloca(left_bytes - small_stack_bytes));
    *taken = 1;
    return call();
}

TEST_F(DialogLibrary, thread_with_a_small_stack_sees_the_protection_dialog_and_is_refused_the_chooser) {
    shown_dialog shown([this] { return on_small_stack([this] { return library.protect(&protect); }); });
    const HWND window = shown.window(L"Orvane Vaultkeep - Protection");
    shown_dialog::press(window, IDC_PROTECT_BROWSE);
    EXPECT_TRUE(shown_dialog::eventually([&] {
        return text_of(GetDlgItem(window, IDC_PROTECT_PROBLEM)).find(L"cannot be opened here") !=
               std::wstring::npos;
    }));
    CheckRadioButton(window, IDC_PROTECT_THIS, IDC_PROTECT_OTHER, IDC_PROTECT_THIS);
    shown_dialog::press(window, IDC_PROTECT_THIS);
    EXPECT_TRUE(shown_dialog::eventually([&] { return IsWindowEnabled(GetDlgItem(window, IDOK)) != FALSE; }));
    shown_dialog::press(window, IDOK);
    EXPECT_NE(shown.result(), 0U);
}

TEST_F(DialogLibrary, thread_with_a_small_stack_sees_the_versions) {
    shown_dialog shown(
        [this] { return on_small_stack([this] { return library.chronels(&chronels, result.get()); }); });
    shown_dialog::press(shown.window(L"Orvane Vaultkeep - Earlier"), IDC_CHRONELS_RESTORE);
    EXPECT_NE(shown.result(), 0U);
    EXPECT_EQ(result->action, chronel_action_restore);
}

TEST_F(DialogLibrary, thread_with_a_small_stack_is_told_of_a_bad_list) {
    const std::string deep(1'000'000, '[');
    chronels.chronel_list = deep.c_str();
    shown_dialog shown(
        [this] { return on_small_stack([this] { return library.chronels(&chronels, result.get()); }); });
    const HWND message = shown.window(L"Orvane Vaultkeep");
    EXPECT_THAT(texts_in(message), testing::HasSubstr(L"cannot be read"));
    shown_dialog::press(message, IDOK);
    EXPECT_EQ(shown.result(), 0U);
}

}  // namespace
}  // namespace ov::dialog
