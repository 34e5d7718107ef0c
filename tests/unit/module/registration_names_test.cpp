#include <gtest/gtest.h>
#include <objbase.h>

#include <string>

#include "module/state/class_ids.h"
#include "module/registration/registration_table.h"
#include "module/registration/registry_names.h"

namespace ov::registration {
namespace {

std::wstring text_of(const CLSID& id) {
    wchar_t text[64] = L"";
    EXPECT_NE(StringFromGUID2(id, text, 64), 0);
    return text;
}

TEST(RegistryNames, class_ids_are_those_of_the_class_objects) {
    EXPECT_EQ(text_of(class_ids::shell_extension), ORV_SHELL_EXTENSION);
    EXPECT_EQ(text_of(class_ids::namespace_folder), ORV_NAMESPACE_FOLDER);
    EXPECT_EQ(text_of(class_ids::one_click_restore), ORV_ONE_CLICK_RESTORE);
    EXPECT_EQ(text_of(class_ids::addons), ORV_ADDONS);
}

TEST(RegistrationTable, rows_that_go_on_with_a_key_follow_the_row_that_opened_it) {
    const auto rows = registration_rows();
    ASSERT_EQ(rows.size(), 29U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].use != key_use::create) {
            ASSERT_GT(i, 0U);
            EXPECT_STREQ(rows[i].path, rows[i - 1].path);
            EXPECT_EQ(rows[i].root, rows[i - 1].root);
            // Else the 32-bit pass would go on with a key that it has not opened.
            EXPECT_NE(rows[i - 1].pass_2, second_pass::left_out);
        }
    }
    EXPECT_EQ(removal_rows().size(), 23U);
}

}  // namespace
}  // namespace ov::registration
