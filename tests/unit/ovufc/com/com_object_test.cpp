#include "ovufc/com/com_object.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace ov::com {
namespace {

live_count counted;
std::optional<std::int32_t> count_in_destructor;

class watched_object final
    : public com_object<watched_object, bases<IUnknown>, answers<answer<IUnknown>>, &counted> {
  public:
    explicit watched_object(bool fails = false) {
        if (fails) {
            throw std::runtime_error("from a constructor");
        }
    }
    ~watched_object() { count_in_destructor = counted.value(); }
};

class ComObject : public testing::Test {
  protected:
    ComObject() { count_in_destructor.reset(); }
};

TEST_F(ComObject, last_release_lowers_the_live_count_only_once_the_object_is_gone) {
    auto* object = make_object<watched_object>();
    EXPECT_EQ(counted.value(), 1);
    EXPECT_EQ(object->AddRef(), 2U);
    EXPECT_EQ(object->Release(), 1U);
    EXPECT_EQ(count_in_destructor, std::nullopt);
    EXPECT_EQ(object->Release(), 0U);
    EXPECT_EQ(count_in_destructor, 1) << "the module could have been unloaded under its own destructor";
    EXPECT_EQ(counted.value(), 0);
}

TEST_F(ComObject, constructor_that_fails_counts_nothing) {
    EXPECT_THROW((void)make_object<watched_object>(true), std::runtime_error);
    EXPECT_EQ(counted.value(), 0);
}

}  // namespace
}  // namespace ov::com
