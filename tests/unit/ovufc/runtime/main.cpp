#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>

#include "tests/unit/ovufc/runtime/guarded_sample.h"

/// "write-zeros COUNT" plays a host of the sample.
int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == "write-zeros") {
        ov::test::guarded_sample().write_zeros(std::strtoul(argv[2], nullptr, 10));
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
