#include "ovufc/exception.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace ov {
namespace {

static_assert(std::is_base_of_v<std::exception, exception>);
static_assert(std::is_nothrow_copy_constructible_v<exception>, "what is thrown must not throw again");

TEST(Exception, message_alone_has_the_code_for_an_invalid_parameter) {
    SetLastError(5);
    const exception error("bad input");
    EXPECT_STREQ(error.what(), "bad input");
    EXPECT_EQ(error.code, 87U);
}

TEST(Exception, failed_call_has_the_last_error_at_construction) {
    SetLastError(1234);
    const exception error("failed", from_last_error);
    SetLastError(5);
    EXPECT_STREQ(error.what(), "failed");
    EXPECT_EQ(error.code, 1234U);
}

TEST(Exception, copy_keeps_the_message_and_loses_the_code) {
    const exception error("message");
    const exception copy(error);
    EXPECT_STREQ(copy.what(), "message");
    EXPECT_EQ(copy.code, 0U);
    EXPECT_EQ(error.code, 87U);

    exception assigned("other");
    assigned = error;
    EXPECT_STREQ(assigned.what(), "message");
    EXPECT_EQ(assigned.code, 0U);
}

TEST(Exception, moved_object_is_a_copy_like_any_other) {
    exception error("message");
    const exception moved(std::move(error));
    EXPECT_STREQ(moved.what(), "message");
    EXPECT_EQ(moved.code, 0U);
    EXPECT_STREQ(error.what(), "message");  // NOLINT(bugprone-use-after-move): nothing was taken away

    exception assigned("other");
    assigned = std::move(error);
    EXPECT_EQ(assigned.code, 0U);
}

TEST(Exception, copy_outlives_the_original) {
    auto error = std::make_unique<exception>(std::string(1000, 'x'));
    const exception copy(*error);
    error.reset();
    EXPECT_EQ(copy.what(), std::string(1000, 'x'));
}

TEST(Exception, caught_by_reference_shows_the_thrown_code) {
    try {
        SetLastError(1234);
        throw exception("thrown", from_last_error);
    } catch (const exception& error) {
        EXPECT_EQ(error.code, 1234U);
    }
}

// What is thrown is then a copy of the named object.
TEST(Exception, thrown_by_name_has_no_code) {
    try {
        exception named("thrown");
        throw named;
    } catch (const exception& error) {
        EXPECT_STREQ(error.what(), "thrown");
        EXPECT_EQ(error.code, 0U);
    }
}

// Catching by value is what this test is about.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wcatch-value"
TEST(Exception, caught_by_value_has_no_code) {
    try {
        throw exception("thrown");
    } catch (exception error) {
        EXPECT_STREQ(error.what(), "thrown");
        EXPECT_EQ(error.code, 0U);
    }
}
#pragma GCC diagnostic pop

TEST(Exception, thrown_again_keeps_the_code) {
    try {
        try {
            throw exception("thrown");
        } catch (const std::exception&) {
            throw;
        }
    } catch (const exception& error) {
        EXPECT_EQ(error.code, 87U);
    }
}

}  // namespace
}  // namespace ov
