#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ov::test {

/// What this process has taken of the things that a host has only so much of: indexes, handles, GDI objects,
/// menus, blocks of the heaps and memory. All are counted from outside their owners (the system's own
/// counters stand still under Wine), indexes by taking all that are left.
///
///     const process_costs before;
///     work();
///     EXPECT_THAT(process_costs().grown_since(before, 10), testing::IsEmpty());
class process_costs {
  public:
    /// Counts now. Other threads should be at rest.
    process_costs();

    /// The kinds of which more than `tolerance` were taken since `before`, with the numbers. Private memory
    /// counts in pages.
    [[nodiscard]] std::vector<std::string> grown_since(const process_costs& before,
                                                       std::size_t tolerance) const;

  private:
    struct amount {
        const char* kind;
        std::size_t taken;
    };
    std::vector<amount> amounts_;
};

}  // namespace ov::test
