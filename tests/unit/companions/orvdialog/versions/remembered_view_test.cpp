#include "companions/orvdialog/versions/remembered_view.h"

#include <gtest/gtest.h>

namespace ov::dialog {
namespace {

TEST(RememberedView, is_nothing_at_first_and_then_the_last) {
    EXPECT_FALSE(recall_view());
    remember_view({{640, 400}, {1, 2, 3, 4}});
    remember_view({{800, 500}, {5, 6, 7, 8}});
    const auto view = recall_view();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->client.cx, 800);
    EXPECT_EQ(view->client.cy, 500);
    EXPECT_EQ(view->column_widths, (std::array{5, 6, 7, 8}));
}

}  // namespace
}  // namespace ov::dialog
