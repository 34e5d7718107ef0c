#include "testkit/imports/import_patch.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>

#include "ovufc/win/handle.h"

namespace ov::test {
namespace {

HMODULE this_program() {
    return GetModuleHandleW(nullptr);
}

// A call in a function of its own, as product code has it: see the header on why.
[[gnu::noinline]] DWORD tick_count() {
    return GetTickCount();
}

using tick_patch = import_patch<decltype(GetTickCount)>;

TEST(ImportPatch, replaced_function_is_called_until_the_scope_ends) {
    {
        const tick_patch patch(this_program(), "kernel32.dll", "GetTickCount", [] { return DWORD{4711}; });
        EXPECT_EQ(tick_count(), 4711U);
    }
    EXPECT_NE(tick_count(), 4711U);
}

TEST(ImportPatch, original_still_reaches_the_system) {
    const DWORD before = tick_count();
    const tick_patch patch(this_program(), "kernel32.dll", "GetTickCount", [] { return DWORD{0}; });
    EXPECT_GE(patch.original()(), before);
}

TEST(ImportPatch, nested_patches_come_off_in_reverse_order) {
    const tick_patch outer(this_program(), "kernel32.dll", "GetTickCount", [] { return DWORD{1}; });
    {
        const tick_patch inner(this_program(), "kernel32.dll", "GetTickCount", [] { return DWORD{2}; });
        EXPECT_EQ(tick_count(), 2U);
    }
    EXPECT_EQ(tick_count(), 1U);
}

TEST(ImportPatch, pattern_ignores_case_and_knows_wild_cards) {
    EXPECT_TRUE(imports(this_program(), "KERNEL32.DLL", "GetTickCount"));
    EXPECT_TRUE(imports(this_program(), "nosuch.dll;kernel*", "GetTickCount"));
    EXPECT_FALSE(imports(this_program(), "user32.dll", "GetTickCount"));
}

TEST(ImportPatch, function_that_is_not_imported_is_reported_by_name) {
    try {
        const tick_patch patch(this_program(), "kernel32.dll", "NoSuchFunction", [] { return DWORD{0}; });
        FAIL() << "nothing was reported";
    } catch (const std::runtime_error& error) {
        const std::string text = error.what();
        EXPECT_NE(text.find("NoSuchFunction"), std::string::npos) << text;
        EXPECT_NE(text.find("kernel32.dll"), std::string::npos) << text;
    }
}

TEST(ImportPatch, works_in_another_loaded_module) {
    const win::unique_library sample(LoadLibraryW(L"testkit_sample.dll"));
    ASSERT_TRUE(sample) << "testkit_sample.dll is built beside the tests";
    const auto sample_tick_count = reinterpret_cast<DWORD (*)()>(
        reinterpret_cast<void*>(GetProcAddress(sample.get(), "sample_tick_count")));
    const tick_patch patch(sample.get(), "kernel32.dll", "GetTickCount", [] { return DWORD{4711}; });
    EXPECT_EQ(sample_tick_count(), 4711U);
    EXPECT_NE(tick_count(), 4711U) << "only the calls of the patched module are replaced";
}

// An image whose import table names one DLL twice, as linkers that merge import libraries leave it.
struct image_with_two_descriptors {
    IMAGE_DOS_HEADER dos{};
    IMAGE_NT_HEADERS headers{};
    IMAGE_IMPORT_DESCRIPTOR descriptors[3]{};
    IMAGE_THUNK_DATA names[2]{};
    FARPROC first_slots[2]{};
    FARPROC second_slots[2]{};
    struct {
        WORD hint = 0;
        char name[14] = "GetTickCount";
    } by_name;
    char dll[16] = "KERNEL32.dll";

    image_with_two_descriptors() {
        dos.e_lfanew = static_cast<LONG>(offset(&headers));
        headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress =
            offset(descriptors);
        names[0].u1.AddressOfData = offset(&by_name);
        FARPROC* const slots[] = {first_slots, second_slots};
        for (int i = 0; i < 2; ++i) {
            descriptors[i].OriginalFirstThunk = offset(names);
            descriptors[i].FirstThunk = offset(slots[i]);
            descriptors[i].Name = offset(dll);
        }
    }
    DWORD offset(const void* member) const {
        return static_cast<DWORD>(static_cast<const std::byte*>(member) -
                                  reinterpret_cast<const std::byte*>(this));
    }
};

TEST(ImportPatch, every_descriptor_of_the_dll_is_covered) {
    image_with_two_descriptors image;
    {
        const import_slots slots(reinterpret_cast<HMODULE>(&image), "kernel32.dll", "GetTickCount",
                                 reinterpret_cast<FARPROC>(8));
        EXPECT_EQ(slots.count(), 2U);
        EXPECT_EQ(image.first_slots[0], reinterpret_cast<FARPROC>(8));
        EXPECT_EQ(image.second_slots[0], reinterpret_cast<FARPROC>(8));
    }
    EXPECT_EQ(image.first_slots[0], nullptr);
    EXPECT_EQ(image.second_slots[0], nullptr);
}

}  // namespace
}  // namespace ov::test
