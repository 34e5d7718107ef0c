#include "companions/devservice/commands.h"
#include "companions/devservice/console.h"
#include "companions/devservice/path.h"
#include "companions/devservice/take_copy.h"
#include "companions/devservice/text.h"

namespace ov::devservice {
namespace {

int protect_rule(command_call& call, const std::wstring& rule) {
    if (!is_safe_relative(rule) || !to_utf8(rule)) {
        return bad_usage("a rule is the name of a folder below a user's profile, such as Documents");
    }
    const DWORD error = call.store.change([&](service_state& state) -> DWORD {
        for (const std::wstring& known : state.rules) {
            if (same_path(known, rule)) {
                return ERROR_ALREADY_EXISTS;
            }
        }
        state.rules.push_back(rule);
        document_changed(state);
        return ERROR_SUCCESS;
    });
    return finish_change(call, error);
}

int unprotect_rule(command_call& call, const std::wstring& rule) {
    const DWORD error = call.store.change([&](service_state& state) -> DWORD {
        const std::size_t removed =
            std::erase_if(state.rules, [&](const std::wstring& known) { return same_path(known, rule); });
        document_changed(state);
        return removed == 0 ? ERROR_NOT_FOUND : ERROR_SUCCESS;
    });
    return finish_change(call, error);
}

}  // namespace

int command_protect(command_call& call) {
    std::wstring rule;
    std::wstring object_path;
    if (take_option(call.words, L"--rule", rule)) {
        return call.words.empty() ? protect_rule(call, rule) : bad_usage("a rule or a path, not both");
    }
    static_cast<void>(take_option(call.words, L"--as", object_path));
    if (call.words.size() != 1 || !to_utf8(object_path)) {
        return bad_usage("protect takes one path");
    }
    const std::optional<std::wstring> path = path_from_word(call.words[0]);
    if (!path) {
        return exit_usage;
    }
    problems left_out;
    const DWORD error = protect(call.store, *path, object_path, left_out);
    return finish_change(call, error, left_out);
}

int command_unprotect(command_call& call) {
    std::wstring rule;
    if (take_option(call.words, L"--rule", rule)) {
        return call.words.empty() ? unprotect_rule(call, rule) : bad_usage("a rule or a path, not both");
    }
    if (call.words.size() != 1) {
        return bad_usage("unprotect takes one path");
    }
    const std::optional<std::wstring> path = path_from_word(call.words[0]);
    return path ? finish_change(call, unprotect(call.store, *path)) : static_cast<int>(exit_usage);
}

int command_restore_point(command_call& call) {
    if (!call.words.empty()) {
        return bad_usage("restore-point takes nothing");
    }
    std::int64_t number = 0;
    problems left_out;
    const DWORD error = take_restore_point(call.store, number, left_out);
    if (error == ERROR_NOT_FOUND) {
        print_error("no folder is protected");
        return exit_failed;
    }
    const int result = finish_change(call, error, left_out);
    if (error == ERROR_SUCCESS) {
        print("restore point " + std::to_string(number) + " taken");
    }
    return result;
}

}  // namespace ov::devservice
