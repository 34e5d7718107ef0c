#include "module/class_object.h"

#include <gtest/gtest.h>

#include <optional>

namespace ov {
namespace {

com::live_count factories;
std::optional<std::int32_t> count_in_destructor;

class watched_factory final : public class_object<watched_factory> {
  public:
    ~watched_factory() { count_in_destructor = factories.value(); }
    static com::live_count& factory_count() noexcept { return factories; }
    static HRESULT make_instance(REFIID, void**) noexcept { return E_NOTIMPL; }
};

TEST(ClassObjectRelease, last_one_lowers_the_factory_count_only_once_the_object_is_gone) {
    count_in_destructor.reset();
    IUnknown* made = nullptr;
    ASSERT_EQ(watched_factory::hand_out(IID_IUnknown, reinterpret_cast<void**>(&made)), S_OK);
    EXPECT_EQ(factories.value(), 1);
    EXPECT_EQ(count_in_destructor, std::nullopt);
    EXPECT_EQ(made->Release(), 0U);
    EXPECT_EQ(count_in_destructor, 1) << "the module could have been unloaded under its own destructor";
    EXPECT_EQ(factories.value(), 0);
}

TEST(ClassObjectRelease, locked_object_stays_and_stays_counted) {
    count_in_destructor.reset();
    IClassFactory* made = nullptr;
    ASSERT_EQ(watched_factory::hand_out(IID_IClassFactory, reinterpret_cast<void**>(&made)), S_OK);
    EXPECT_EQ(made->LockServer(TRUE), 1);
    EXPECT_EQ(made->Release(), 0U);
    EXPECT_EQ(count_in_destructor, std::nullopt);
    EXPECT_EQ(factories.value(), 1);
    EXPECT_EQ(made->LockServer(FALSE), 0);
    EXPECT_EQ(count_in_destructor, std::nullopt) << "the last unlock frees nothing, on purpose";
    EXPECT_EQ(factories.value(), 1);
    EXPECT_EQ(made->Release(), 0U);
    EXPECT_EQ(factories.value(), 0);
}

}  // namespace
}  // namespace ov
