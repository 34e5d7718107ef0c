#include "tools/stand_ins/probes.h"

#include <gtest/gtest.h>

#include "recording_handler.h"
#include "tools/stand_ins/items/data_object.h"
#include "tools/stand_ins/menus/default_context_menu.h"

namespace ov::stand_ins {
namespace {

STDAPI refuse_menu(const DEFCONTEXTMENU* /*description*/, REFIID /*riid*/, void** /*result*/) {
    return E_INVALIDARG;
}

class Probes : public testing::Test {
  protected:
    test_apartment apartment;
};

// Each fails when the system has learned the function: then its stand-in goes.
TEST_F(Probes, system_lacks_what_is_supplied) {
    EXPECT_TRUE(lacks_default_extract_icon());
    EXPECT_TRUE(lacks_associations_for_classes());
    EXPECT_TRUE(lacks_data_objects());
    EXPECT_TRUE(lacks_handlers_in_menus());
    EXPECT_TRUE(lacks_elevation());
}

TEST_F(Probes, function_that_works_is_not_missing) {
    EXPECT_FALSE(is_not_implemented(&create_data_object));
    EXPECT_FALSE(ignores_classes(&create_default_context_menu));
}

TEST_F(Probes, function_that_is_not_exported_is_missing) {
    EXPECT_TRUE(is_not_implemented(nullptr));
    EXPECT_TRUE(ignores_classes(nullptr));
}

TEST_F(Probes, menu_that_cannot_be_tried_stays_the_systems) {
    EXPECT_FALSE(ignores_classes(&refuse_menu));
}

}  // namespace
}  // namespace ov::stand_ins
