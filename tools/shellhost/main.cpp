// shellhost: a small Explorer, to show the product at work and to test it from outside.
#include <array>
#include <exception>
#include <string>
#include <vector>

#include "tools/command_line/program.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/commands.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/exit_codes.h"

namespace ov::shellhost {

namespace {

struct command {
    const wchar_t* name;
    int (*run)(arguments& words);
    const wchar_t* usage;
};

const std::array commands = {
    command{L"menu", &run_menu, menu_usage},
    command{L"verbs", &run_verbs, verbs_usage},
    command{L"list", &run_list, list_usage},
    command{L"dialog", &run_dialog, dialog_usage},
};

const command window{L"", &run_window, window_usage};

constexpr const wchar_t* exit_code_help =
    L"Exit codes: 0 done; 1 failed, or the command run returned a failure; 2 the call's words are off; 3 "
    L"the\n"
    L"menu has no such command, or it is greyed.\n";

std::wstring whole_help() {
    std::wstring text = L"shellhost: a small Explorer for the Orvane Vaultkeep shell extension.\n\n";
    text += std::wstring(window.usage) + L"\n";
    for (const command& each : commands) {
        text += std::wstring(each.usage) + L"\n";
    }
    return text + exit_code_help;
}

/// The command that the first word names; the window's when that is an option, none when it is unknown.
const command* find_command(const std::vector<std::wstring>& words) {
    if (words.empty() || words.front().starts_with(L"-")) {
        return &window;
    }
    for (const command& each : commands) {
        if (words.front() == each.name) {
            return &each;
        }
    }
    return nullptr;
}

int run_command(const command* chosen, arguments& words) {
    if (chosen != &window) {
        const std::wstring name = words.take_word(L"a command");
        if (chosen == nullptr) {
            throw usage_error(L"unknown command '" + name + L"'");
        }
    }
    try {
        return chosen->run(words);
    } catch (const command_failure& error) {
        print_error(error.message());
    } catch (const usage_error&) {
        throw;
    } catch (const std::exception& error) {
        const std::string text = error.what();
        print_error(std::wstring(text.begin(), text.end()));
    }
    return exit_failed;
}

int run(const std::vector<std::wstring>& words) {
    const command* chosen = find_command(words);
    const bool is_one_command = chosen != nullptr && chosen != &window;
    return command_line::run_program(L"shellhost", is_one_command ? chosen->usage : whole_help(), words,
                                     [chosen](arguments& rest) { return run_command(chosen, rest); });
}

}  // namespace

}  // namespace ov::shellhost

int main() {
    return ov::shellhost::run(ov::command_line::words_of_process());
}
