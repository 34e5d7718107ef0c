#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include <string_view>

#include "tests/module/exit/busy_host.h"

int main(int argc, char** argv) {
    int argument_count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &argument_count);
    if (argument_count == 3 && std::wstring_view(arguments[1]) == L"busy-host") {
        ov::test::busy_host::play(arguments[2]);
    }
    LocalFree(arguments);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
