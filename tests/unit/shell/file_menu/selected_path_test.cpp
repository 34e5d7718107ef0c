#include "shell/file_menu/selected_path.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "testkit/memory/guarded_buffer.h"
#include "testkit/shell/data_object.h"

namespace ov::shell {
namespace {

using test::data_object;
using test::select_block;
using test::select_paths;

TEST(SelectedPath, oneFile_isItsPath) {
    EXPECT_EQ(selected_path(select_paths({L"C:\\a folder\\\u00fcml\u0105ut"}).Get()),
              L"C:\\a folder\\\u00fcml\u0105ut");
}

TEST(SelectedPath, narrowList_isReadToo) {
    EXPECT_EQ(selected_path(select_block(test::narrow_file_list({"C:\\one"})).Get()), L"C:\\one");
}

TEST(SelectedPath, noneOrSeveral_isNothing) {
    EXPECT_EQ(selected_path(nullptr), std::nullopt);
    EXPECT_EQ(selected_path(select_paths({}).Get()), std::nullopt);
    EXPECT_EQ(selected_path(select_paths({L"C:\\a", L"C:\\b"}).Get()), std::nullopt);
}

TEST(SelectedPath, request_asksForAFileListInMemory) {
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

TEST(SelectedPath, longPath_isCutAt260Characters) {
    const std::wstring path = L"C:\\" + std::wstring(400, L'x');
    EXPECT_EQ(selected_path(select_paths({path}).Get()), path.substr(0, 260));
    const std::wstring just_fits = path.substr(0, 260);
    EXPECT_EQ(selected_path(select_paths({just_fits}).Get()), just_fits);
}

// Whatever was lent must come back unlocked, once.
void expect_given_back(data_object& selection) {
    EXPECT_EQ(selection.references(), 1U);
    EXPECT_EQ(selection.lock_count(), 0U);
}

TEST(SelectedPath, medium_isUnlockedAndGivenBack) {
    for (const auto& paths : std::vector<std::vector<std::wstring>>{{L"C:\\a"}, {}, {L"C:\\a", L"C:\\b"}}) {
        const auto selection = select_paths(paths);
        (void)selected_path(selection.Get());
        expect_given_back(*selection.Get());
    }
}

TEST(SelectedPath, refusedRequest_isNothing) {
    const auto selection = select_paths({L"C:\\a"});
    for (const HRESULT refusal : {DV_E_FORMATETC, E_OUTOFMEMORY, E_FAIL, E_UNEXPECTED}) {
        selection->answer = refusal;
        EXPECT_EQ(selected_path(selection.Get()), std::nullopt);
        expect_given_back(*selection.Get());
    }
}

TEST(SelectedPath, memoryThatCannotBeLocked_isNothing) {
    const auto selection = select_paths({L"C:\\a"});
    selection->lend_nothing = true;
    EXPECT_EQ(selected_path(selection.Get()), std::nullopt);
    expect_given_back(*selection.Get());
}

TEST(SelectedPath, mediumOfAnotherKind_isNothing) {
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

TEST(WholeFileList, everyShorterBlock_isRefused) {
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

TEST(WholeFileList, emptyList_endsWithItsFirstTerminator) {
    EXPECT_TRUE(is_whole(test::file_list({})));
}

TEST(WholeFileList, offsetOfTheTexts_mustLeadIntoTheBlock) {
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

TEST(SelectedPath, garbage_isNothing) {
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
