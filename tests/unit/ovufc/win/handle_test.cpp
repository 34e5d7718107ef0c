#include "ovufc/win/handle.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace ov::win {
namespace {

std::vector<int> closed;

struct number_traits {
    using type = int;
    static type invalid() noexcept { return -1; }
    static void close(type value) noexcept {
        closed.push_back(value);
        SetLastError(0);
    }
};
using unique_number = unique_handle<number_traits>;
using numbers = std::vector<int>;

class UniqueHandle : public testing::Test {
  protected:
    UniqueHandle() { closed.clear(); }
};

TEST_F(UniqueHandle, what_is_owned_is_closed_once) {
    {
        unique_number first(1);
        const unique_number second(std::move(first));
        EXPECT_EQ(2, unique_number(2).release());
    }
    EXPECT_EQ(numbers{1}, closed);
}

TEST_F(UniqueHandle, what_was_held_is_closed_for_the_next) {
    unique_number handle(1);
    handle.reset(2);
    EXPECT_EQ(numbers{1}, closed);
    handle = unique_number(3);
    EXPECT_EQ((numbers{1, 2}), closed);
    *handle.put() = 4;
    EXPECT_EQ((numbers{1, 2, 3}), closed);
    EXPECT_EQ(4, handle.get());
}

TEST_F(UniqueHandle, closing_keeps_the_last_error) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    unique_number(1).reset();
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND}, GetLastError());
}

}  // namespace
}  // namespace ov::win
