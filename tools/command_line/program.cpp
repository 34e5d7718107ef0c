#include "tools/command_line/program.h"

#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "res/version.h"
#include "tools/command_line/console.h"

namespace ov::command_line {
namespace {

bool is_help(const std::wstring& word) {
    return word == L"--help" || word == L"-h";
}

}  // namespace

std::vector<std::wstring> words_of_process() {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                &LocalFree);
    return words == nullptr ? std::vector<std::wstring>()
                            : std::vector<std::wstring>(words.get() + 1, words.get() + count);
}

int run_program(const std::wstring& name, const std::wstring& help, std::vector<std::wstring> words,
                const std::function<int(arguments&)>& body) {
    if (std::any_of(words.begin(), words.end(), is_help)) {
        print_line(help);
        return 0;
    }
    if (std::find(words.begin(), words.end(), L"--version") != words.end()) {
        print_line(name + L" " + TEXT(ORV_VERSION_SHORT_TEXT));
        return 0;
    }
    try {
        arguments taken(std::move(words));
        return body(taken);
    } catch (const usage_error& error) {
        print_note(name + L": " + error.message() + L"; see " + name + L" --help");
        return exit_usage;
    }
}

}  // namespace ov::command_line
