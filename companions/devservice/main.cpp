#include <windows.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "companions/devservice/command_line.h"

int main() {
    int count = 0;
    LPWSTR* words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> rest;
    for (int index = 1; index < count; ++index) {
        rest.emplace_back(words[index]);
    }
    LocalFree(words);
    return ov::devservice::run_command_line(std::move(rest));
}
