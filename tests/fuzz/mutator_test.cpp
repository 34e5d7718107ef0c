#include "tests/fuzz/mutator.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using ov::test::mutator;

TEST(Mutator, same_seed_gives_the_same_texts) {
    mutator one(7, {"{\"a\":1}", "[2]"}, {"null"});
    mutator other(7, {"{\"a\":1}", "[2]"}, {"null"});
    for (int n = 0; n != 1000; ++n) {
        EXPECT_EQ(one.next(), other.next());
    }
}

TEST(Mutator, thousand_texts_are_hardly_ever_the_same) {
    mutator texts(7, {"{\"statusCode\":0,\"data\":{\"protectedFolder\":true}}"}, {"null"});
    std::set<std::string> seen;
    for (int n = 0; n != 1000; ++n) {
        seen.insert(texts.next());
    }
    EXPECT_GT(seen.size(), 900u);
}

}  // namespace
