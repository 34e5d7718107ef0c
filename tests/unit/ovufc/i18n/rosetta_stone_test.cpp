#include "ovufc/i18n/rosetta_stone.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <atomic>

#include "testkit/imports/format_message.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/ovufc/cert/samples.h"

namespace ov::i18n {
namespace {

using test::format_message;
using test::import_patch;
using test::sample;

// The messages of the sample library (make_sample_texts.sh).
constexpr std::uint32_t with_insert = 1;
constexpr std::uint32_t with_printf = 2;
constexpr std::uint32_t of_2047_chars = 3;
constexpr std::uint32_t of_2048_chars = 4;
constexpr std::uint32_t plain = 5;
constexpr std::uint32_t missing = 6;

TEST(RosettaStone, before_loading_texts_are_empty) {
    const rosetta_stone stone;
    EXPECT_EQ(stone.lookup(plain), L"");
    EXPECT_EQ(stone.format(with_printf, L"a", 1), L"");
}

TEST(RosettaStone, library_signed_by_the_maker_is_loaded) {
    rosetta_stone stone;
    EXPECT_TRUE(stone.load(sample(L"maker")));
    EXPECT_EQ(stone.lookup(plain), L"no placeholder");
}

TEST(RosettaStone, second_load_is_refused_and_keeps_the_first) {
    rosetta_stone stone;
    ASSERT_TRUE(stone.load(sample(L"maker")));
    EXPECT_FALSE(stone.load(sample(L"maker")));
    EXPECT_FALSE(stone.load(sample(L"other_case")));
    EXPECT_FALSE(stone.load(L"C:\\nowhere.dll"));
    EXPECT_EQ(stone.lookup(plain), L"no placeholder");
}

TEST(RosettaStone, files_that_are_not_the_makers_are_not_loaded) {
    const HMODULE program = GetModuleHandleW(nullptr);
    const import_patch<decltype(LoadLibraryExW)> loading(program, "kernel32.dll", "LoadLibraryExW",
                                                         [](LPCWSTR, HANDLE, DWORD) {
                                                             ADD_FAILURE() << "must not be loaded";
                                                             return HMODULE{};
                                                         });
    for (const wchar_t* name : {L"unsigned", L"other_maker", L"tampered", L"no such file"}) {
        rosetta_stone stone;
        EXPECT_FALSE(stone.load(sample(name)));
        EXPECT_EQ(stone.lookup(plain), L"");
    }
}

TEST(RosettaStone, refused_load_leaves_room_for_a_good_one) {
    rosetta_stone stone;
    EXPECT_FALSE(stone.load(sample(L"unsigned")));
    EXPECT_TRUE(stone.load(sample(L"maker")));
}

TEST(RosettaStone, library_is_loaded_as_data_from_beside_the_program) {
    static int loads;
    loads = 0;
    const import_patch<decltype(LoadLibraryExW)> loading(GetModuleHandleW(nullptr), "kernel32.dll",
                                                         "LoadLibraryExW",
                                                         [](LPCWSTR path, HANDLE file, DWORD flags) {
                                                             ++loads;
                                                             EXPECT_EQ(path, sample(L"maker"));
                                                             EXPECT_EQ(file, nullptr);
                                                             EXPECT_EQ(flags, 0x202U);
                                                             return HMODULE{};
                                                         });
    rosetta_stone stone;
    EXPECT_FALSE(stone.load(sample(L"maker")));
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(stone.lookup(plain), L"");
}

TEST(RosettaStone, destruction_frees_the_library) {
    static int frees;
    frees = 0;
    static BOOL(WINAPI * real_free)(HMODULE);
    const import_patch<decltype(FreeLibrary)> freeing(GetModuleHandleW(nullptr), "kernel32.dll",
                                                      "FreeLibrary", [](HMODULE library) {
                                                          ++frees;
                                                          return real_free(library);
                                                      });
    real_free = freeing.original();
    { const rosetta_stone never_loaded; }
    EXPECT_EQ(frees, 0);
    {
        rosetta_stone stone;
        ASSERT_TRUE(stone.load(sample(L"maker")));
    }
    EXPECT_EQ(frees, 1);
}

class LoadedStone : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(stone.load(sample(L"maker"))); }
    rosetta_stone stone;
};

TEST_F(LoadedStone, missing_message_is_empty) {
    EXPECT_EQ(stone.lookup(missing), L"");
    EXPECT_EQ(stone.lookup(0xFFFFFFFF), L"");
    EXPECT_EQ(stone.format(missing, L"a"), L"");
}

TEST_F(LoadedStone, message_with_an_insert_is_empty) {
    EXPECT_EQ(stone.lookup(with_insert), L"");
    EXPECT_EQ(stone.format(with_insert, L"a"), L"");
}

TEST_F(LoadedStone, longest_message_is_whole) {
    EXPECT_EQ(stone.lookup(of_2047_chars), std::wstring(2047, L'x'));
    EXPECT_EQ(stone.format(of_2047_chars), std::wstring(2047, L'x'));
}

TEST_F(LoadedStone, longer_message_is_empty) {
    EXPECT_EQ(stone.lookup(of_2048_chars), L"");
}

TEST_F(LoadedStone, lookup_leaves_printf_sequences) {
    EXPECT_EQ(stone.lookup(with_printf), L"%s|%d|%%");
}

// The Microsoft meaning: "%s" in a wide format is a wide string.
TEST_F(LoadedStone, format_takes_wide_strings) {
    EXPECT_EQ(stone.format(with_printf, L"C:\\\u00C4lbum \u4FDD", 42), L"C:\\\u00C4lbum \u4FDD|42|%");
}

TEST_F(LoadedStone, format_has_no_limit_of_its_own) {
    const std::wstring path(100'000, L'y');
    EXPECT_EQ(stone.format(with_printf, path.c_str(), -1), path + L"|-1|%");
}

TEST_F(LoadedStone, format_of_a_plain_text_is_the_text) {
    EXPECT_EQ(stone.format(plain), L"no placeholder");
}

TEST_F(LoadedStone, lookup_asks_the_message_table_as_it_must) {
    static int calls;
    calls = 0;
    const import_patch<format_message> formatting(GetModuleHandleW(nullptr), "kernel32.dll", "FormatMessageW",
                                                  [](DWORD flags, LPCVOID source, DWORD number, DWORD,
                                                     LPWSTR buffer, DWORD capacity, char** arguments) {
                                                      ++calls;
                                                      EXPECT_EQ(flags, 0x800U);
                                                      EXPECT_NE(source, nullptr);
                                                      EXPECT_EQ(number, 0x40003U);
                                                      EXPECT_EQ(capacity, 2048U);
                                                      EXPECT_EQ(arguments, nullptr);
                                                      // A text ends at its zero, whatever the count says.
                                                      std::copy_n(L"cut\0here", 9, buffer);
                                                      return DWORD{8};
                                                  });
    EXPECT_EQ(stone.lookup(0x40003), L"cut");
    EXPECT_EQ(calls, 1);
}

struct shared_stone {
    rosetta_stone stone;
    std::atomic<bool> done = false;
    std::atomic<int> wrong = 0;
    std::atomic<int> loads = 0;
    std::atomic<int> full_texts = 0;
};

DWORD WINAPI fetch_texts(void* argument) {
    auto& shared = *static_cast<shared_stone*>(argument);
    while (!shared.done) {
        const std::wstring text = shared.stone.lookup(plain);
        shared.full_texts += text == L"no placeholder" ? 1 : 0;
        shared.wrong += text.empty() || text == L"no placeholder" ? 0 : 1;
    }
    return 0;
}

DWORD WINAPI load_texts(void* argument) {
    auto& shared = *static_cast<shared_stone*>(argument);
    shared.loads += shared.stone.load(sample(L"maker")) ? 1 : 0;
    return 0;
}

TEST(RosettaStone, loads_and_fetches_on_many_threads_give_one_load_and_whole_texts) {
    shared_stone shared;
    std::array<HANDLE, 2> fetchers{};
    std::array<HANDLE, 4> loaders{};
    for (HANDLE& thread : fetchers) {
        thread = CreateThread(nullptr, 0, fetch_texts, &shared, 0, nullptr);
    }
    for (HANDLE& thread : loaders) {
        thread = CreateThread(nullptr, 0, load_texts, &shared, 0, nullptr);
    }
    EXPECT_EQ(WaitForMultipleObjects(4, loaders.data(), TRUE, 20'000), WAIT_OBJECT_0);
    Sleep(20);
    shared.done = true;
    EXPECT_EQ(WaitForMultipleObjects(2, fetchers.data(), TRUE, 20'000), WAIT_OBJECT_0);
    EXPECT_EQ(shared.loads, 1);
    EXPECT_EQ(shared.wrong, 0);
    EXPECT_GT(shared.full_texts, 0);
    for (const HANDLE thread : {fetchers[0], fetchers[1], loaders[0], loaders[1], loaders[2], loaders[3]}) {
        CloseHandle(thread);
    }
}

}  // namespace
}  // namespace ov::i18n
