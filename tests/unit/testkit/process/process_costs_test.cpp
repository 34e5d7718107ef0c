#include "testkit/process/process_costs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

namespace ov::test {
namespace {

TEST(ProcessCosts, nothing_taken_nothing_has_grown) {
    const process_costs before;
    EXPECT_THAT(process_costs().grown_since(before, 2), testing::IsEmpty());
}

// Takes `count` of something, and expects that kind alone to have grown, until it is given back.
template <class Take, class GiveBack>
void expect_found(const char* kind, Take take, GiveBack give_back) {
    constexpr int count = 100;
    std::vector<decltype(take())> taken;
    taken.reserve(count);
    const process_costs before;
    for (int i = 0; i < count; ++i) {
        taken.push_back(take());
    }
    EXPECT_THAT(process_costs().grown_since(before, 90), testing::ElementsAre(testing::StartsWith(kind)));
    for (auto one : taken) {
        give_back(one);
    }
    EXPECT_THAT(process_costs().grown_since(before, 5), testing::IsEmpty());
}

TEST(ProcessCosts, what_is_taken_is_found_by_its_kind_and_gone_when_given_back) {
    expect_found(
        "TLS indexes", [] { return TlsAlloc(); }, [](DWORD index) { TlsFree(index); });
    expect_found(
        "FLS indexes", [] { return FlsAlloc(nullptr); }, [](DWORD index) { FlsFree(index); });
    expect_found(
        "handles", [] { return CreateEventW(nullptr, TRUE, FALSE, nullptr); },
        [](HANDLE event) { CloseHandle(event); });
    expect_found(
        "GDI objects", [] { return CreateBitmap(1, 1, 1, 1, nullptr); },
        [](HBITMAP bitmap) { DeleteObject(bitmap); });
    expect_found(
        "menus", [] { return CreateMenu(); }, [](HMENU menu) { DestroyMenu(menu); });
    expect_found(
        "heap blocks", [] { return HeapAlloc(GetProcessHeap(), 0, 16); },
        [](void* block) { HeapFree(GetProcessHeap(), 0, block); });
    expect_found(
        "heap blocks", [] { return CoTaskMemAlloc(16); }, [](void* block) { CoTaskMemFree(block); });
    expect_found(
        "private pages", [] { return VirtualAlloc(nullptr, 1, MEM_COMMIT, PAGE_READWRITE); },
        [](void* page) { VirtualFree(page, 0, MEM_RELEASE); });
}

}  // namespace
}  // namespace ov::test
