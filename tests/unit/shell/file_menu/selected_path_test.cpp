#include "shell/file_menu/selected_path.h"

#include <windows.h>
#include <shellapi.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "testkit/imports/import_patch.h"
#include "testkit/memory/guarded_buffer.h"
#include "testkit/shell/data_object.h"

namespace ov::shell {
namespace {

using test::data_object;
using test::select_block;
using test::select_paths;

TEST(SelectedPath, one_file_is_its_path) {
    EXPECT_EQ(selected_path(select_paths({L"C:\\a folder\\\u00fcml\u0105ut"}).Get()),
              L"C:\\a folder\\\u00fcml\u0105ut");
}

TEST(SelectedPath, narrow_list_is_read_too) {
    EXPECT_EQ(selected_path(select_block(test::narrow_file_list({"C:\\one"})).Get()), L"C:\\one");
}

TEST(SelectedPath, none_or_several_is_nothing) {
    EXPECT_EQ(selected_path(nullptr), std::nullopt);
    EXPECT_EQ(selected_path(select_paths({}).Get()), std::nullopt);
    EXPECT_EQ(selected_path(select_paths({L"C:\\a", L"C:\\b"}).Get()), std::nullopt);
}

TEST(SelectedPath, request_asks_for_a_file_list_in_memory) {
    const auto selection = select_paths({L"C:\\a"});
    ASSERT_TRUE(selected_path(selection.Get()));
    EXPECT_EQ(selection->requests(), 1);
    const FORMATETC format = selection->last_format();
    EXPECT_EQ(format.cfFormat, CF_HDROP);
    EXPECT_EQ(format.ptd, nullptr);
    EXPECT_EQ(format.dwAspect, static_cast<DWORD>(DVASPECT_CONTENT));
    EXPECT_EQ(format.lindex, -1);
    EXPECT_EQ(format.tymed, static_cast<DWORD>(TYMED_HGLOBAL));
}

TEST(SelectedPath, long_path_is_cut_at_260_characters) {
    const std::wstring path = L"C:\\" + std::wstring(400, L'x');
    EXPECT_EQ(selected_path(select_paths({path}).Get()), path.substr(0, 260));
    const std::wstring just_fits = path.substr(0, 260);
    EXPECT_EQ(selected_path(select_paths({just_fits}).Get()), just_fits);
}

UINT offered_chars = 0;

UINT WINAPI record_room(HDROP, UINT number, LPWSTR, UINT capacity_chars) {
    if (number == 0xFFFFFFFF) {
        return 1;
    }
    offered_chars = capacity_chars;
    return 0;
}

TEST(SelectedPath, room_for_260_characters_and_their_end_is_offered) {
    const test::import_patch<decltype(DragQueryFileW)> patch(GetModuleHandleW(nullptr), "shell32.dll",
                                                             "DragQueryFileW", record_room);
    EXPECT_EQ(selected_path(select_paths({L"C:\\a"}).Get()), std::nullopt);
    EXPECT_EQ(offered_chars, 261U);
}

// Whatever was lent must come back unlocked, once.
void expect_given_back(data_object& selection) {
    EXPECT_EQ(selection.references(), 1U);
    EXPECT_EQ(selection.lock_count(), 0U);
}

TEST(SelectedPath, medium_is_unlocked_and_given_back) {
    for (const auto& paths : std::vector<std::vector<std::wstring>>{{L"C:\\a"}, {}, {L"C:\\a", L"C:\\b"}}) {
        const auto selection = select_paths(paths);
        (void)selected_path(selection.Get());
        expect_given_back(*selection.Get());
    }
}

TEST(SelectedPath, refused_request_is_nothing) {
    const auto selection = select_paths({L"C:\\a"});
    for (const HRESULT refusal : {DV_E_FORMATETC, E_OUTOFMEMORY, E_FAIL, E_UNEXPECTED}) {
        selection->answer = refusal;
        EXPECT_EQ(selected_path(selection.Get()), std::nullopt);
        expect_given_back(*selection.Get());
    }
}

TEST(SelectedPath, memory_that_cannot_be_locked_is_nothing) {
    const auto selection = select_paths({L"C:\\a"});
    selection->lend_nothing = true;
    EXPECT_EQ(selected_path(selection.Get()), std::nullopt);
    expect_given_back(*selection.Get());
}

TEST(SelectedPath, medium_of_another_kind_is_nothing) {
    const auto selection = select_paths({L"C:\\a"});
    selection->lent_tymed = TYMED_NULL;
    EXPECT_EQ(selected_path(selection.Get()), std::nullopt);
    expect_given_back(*selection.Get());
}

bool is_whole(const std::vector<std::byte>& block) {
    const test::guarded_buffer guarded(block);
    const bool whole = is_whole_file_list(guarded.data(), block.size());
    EXPECT_EQ(guarded.overruns(), 0) << "read beyond " << block.size() << " bytes";
    return whole;
}

TEST(WholeFileList, every_shorter_block_is_refused) {
    for (const auto& whole :
         {test::file_list({L"C:\\a", L"D:\\b"}), test::narrow_file_list({"C:\\a", "D:\\b"})}) {
        EXPECT_TRUE(is_whole(whole));
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const std::vector<std::byte> part(whole.begin(),
                                              whole.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_FALSE(is_whole(part)) << size << " of " << whole.size() << " bytes";
        }
    }
}

TEST(WholeFileList, empty_list_ends_with_its_first_terminator) {
    EXPECT_TRUE(is_whole(test::file_list({})));
}

TEST(WholeFileList, offset_of_the_texts_must_lead_into_the_block) {
    auto block = test::file_list({L"C:\\a"});
    const auto with_offset = [&](DWORD offset) {
        std::memcpy(block.data(), &offset, sizeof offset);
        return is_whole(block);
    };
    EXPECT_TRUE(with_offset(sizeof(DROPFILES)));
    EXPECT_FALSE(with_offset(0));
    EXPECT_FALSE(with_offset(static_cast<DWORD>(block.size())));
    EXPECT_FALSE(with_offset(static_cast<DWORD>(block.size()) + 1));
    EXPECT_FALSE(with_offset(0x7FFFFFFF));
    EXPECT_FALSE(with_offset(0xFFFFFFFF));
}

TEST(SelectedPath, garbage_is_nothing) {
    std::vector<std::byte> garbage(300);
    unsigned state = 12345;
    for (int round = 0; round < 200; ++round) {
        for (auto& byte : garbage) {
            state = state * 1103515245 + 12345;
            byte = static_cast<std::byte>((state >> 16) | 1);  // no zero: no end
        }
        const auto selection = select_block(garbage);
        EXPECT_EQ(selected_path(selection.Get()), std::nullopt);
        expect_given_back(*selection.Get());
    }
}

}  // namespace
}  // namespace ov::shell
