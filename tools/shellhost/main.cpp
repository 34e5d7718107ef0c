// shellhost: a small Explorer, to show the product at work and to test it from outside.
#include <windows.h>
#include <shellapi.h>

#include <array>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/commands.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/exit_codes.h"

namespace ov::shellhost {

namespace {

struct command {
    const wchar_t* name;
    int (*run)(arguments words);
    const wchar_t* usage;
};

const std::array commands = {
    command{L"menu", &run_menu, menu_usage},
    command{L"verbs", &run_verbs, verbs_usage},
    command{L"list", &run_list, list_usage},
};

const command window{L"", &run_window, window_usage};

constexpr const wchar_t* exit_code_help =
    L"Exit codes: 0 done; 1 failed, or the command run returned a failure; 2 the call's words are off; 3 "
    L"the\n"
    L"menu has no such command, or it is greyed.\n";

void print_help() {
    print_line(L"shellhost: a small Explorer for the Orvane Vaultkeep shell extension.\n");
    print_line(window.usage);
    for (const command& each : commands) {
        print_line(each.usage);
    }
    print_line(exit_code_help);
}

int run_command(const command& chosen, std::vector<std::wstring> words) {
    arguments taken(std::move(words));
    if (taken.take_switch(L"--help")) {
        print_line(chosen.usage);
        return exit_done;
    }
    try {
        return chosen.run(std::move(taken));
    } catch (const usage_error& error) {
        print_error(error.message() + L"\nSee shellhost --help.");
        return exit_usage;
    } catch (const command_failure& error) {
        print_error(error.message());
        return exit_failed;
    } catch (const std::exception& error) {
        const std::string text = error.what();
        print_error(std::wstring(text.begin(), text.end()));
        return exit_failed;
    }
}

int run(std::vector<std::wstring> words) {
    if (!words.empty() &&
        (words.front() == L"--help" || words.front() == L"-h" || words.front() == L"help")) {
        print_help();
        return exit_done;
    }
    if (words.empty() || words.front().rfind(L"--", 0) == 0) {
        return run_command(window, std::move(words));
    }
    for (const command& each : commands) {
        if (words.front() == each.name) {
            return run_command(each, {words.begin() + 1, words.end()});
        }
    }
    print_error(L"unknown command '" + words.front() + L"'\nSee shellhost --help.");
    return exit_usage;
}

}  // namespace

}  // namespace ov::shellhost

int main() {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                &LocalFree);
    return ov::shellhost::run({words.get() + 1, words.get() + count});
}
