#include "tools/shellhost/script/parts/accessible_parts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/shellhost/apartment.h"

namespace ov::shellhost {
namespace {

class AccessibleParts : public testing::Test {
  protected:
    AccessibleParts()
        : window_(CreateWindowExW(0, L"STATIC", L"parts", WS_POPUP | WS_VISIBLE, 10, 20, 300, 200, nullptr,
                                  nullptr, nullptr, nullptr)) {
        add_button(L"Alpha", 40);
        add_button(L"Beta", 80);
    }
    ~AccessibleParts() override { DestroyWindow(window_); }

    void add_button(const wchar_t* name, int top) const {
        CreateWindowExW(0, L"BUTTON", name, WS_CHILD | WS_VISIBLE, 30, top, 90, 25, window_, nullptr, nullptr,
                        nullptr);
    }

    apartment com_;
    HWND window_;
};

TEST_F(AccessibleParts, elements_below_a_window_are_visited_with_role_name_and_place) {
    std::vector<std::wstring> names;
    RECT alpha{};
    visit_accessible(window_, [&](const accessible_element& element) {
        names.push_back(element.name());
        if (names.back() == L"Alpha") {
            alpha = element.place();
            EXPECT_NE(element.role(), 0);
        }
        return false;
    });
    EXPECT_EQ(names, (std::vector<std::wstring>{L"parts", L"Alpha", L"Beta"}));
    EXPECT_EQ(alpha.left, 40);
    EXPECT_EQ(alpha.top, 60);
    EXPECT_EQ(alpha.right - alpha.left, 90);
}

TEST_F(AccessibleParts, visit_ends_when_it_is_told_so) {
    int visited = 0;
    visit_accessible(window_, [&](const accessible_element&) { return ++visited == 2; });
    EXPECT_EQ(visited, 2);
}

TEST_F(AccessibleParts, window_without_tree_or_list_has_no_nodes_and_no_items) {
    const accessible_parts parts(window_);
    EXPECT_TRUE(parts.nodes().empty());
    EXPECT_FALSE(parts.expand(L"Alpha"));
    EXPECT_FALSE(parts.place_of_item(L"Alpha", 0));
}

}  // namespace
}  // namespace ov::shellhost
