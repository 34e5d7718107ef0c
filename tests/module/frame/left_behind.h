#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testkit/process/shipped_module.h"
#include "testkit/process/process_costs.h"

namespace ov::test {

/// What so many loads of the module left behind, each used by `use(module)` and freed: the kinds of which
/// there is more than one in a hundred loads. `after_each` runs when the module is gone again.
template <class Use, class AfterEach>
[[nodiscard]] std::vector<std::string> left_behind_by(int loads, Use use, AfterEach after_each) {
    const auto load_once = [&use] { use(shipped_module()); };
    for (int warm_up = 0; warm_up < 10; ++warm_up) {
        load_once();  // what the system takes for itself, once
    }
    const process_costs before;
    for (int load = 0; load < loads && !testing::Test::HasFailure(); ++load) {
        load_once();
        after_each();
    }
    constexpr int growth_of_the_system = 20;
    return process_costs().grown_since(before, growth_of_the_system + loads / 100);
}

template <class Use>
[[nodiscard]] std::vector<std::string> left_behind_by(int loads, Use use) {
    return left_behind_by(loads, use, [] {});
}

}  // namespace ov::test
