#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include "tests/driver/processes/roles.h"

int main(int argc, char** argv) {
    int argument_count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &argument_count);
    const auto played = ov::test::roles::play(argument_count, arguments);
    LocalFree(arguments);
    if (played) {
        return *played;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
