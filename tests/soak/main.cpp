#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include <string>
#include <vector>

#include "tests/soak/roles.h"

int main(int argc, char** argv) {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    const std::vector<std::wstring> words(arguments, arguments + count);
    LocalFree(arguments);
    if (words.size() == 5 && words[1] == ov::test::role_crowd) {
        return ov::test::play_crowd(words[2], std::stoul(words[3]), std::stoul(words[4]));
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
