#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/command_line/console.h"
#include "companions/devservice/copies/take_copy.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"

namespace ov::devservice {
namespace {

int protect_rule(command_call& call, const std::wstring& rule) {
    if (!is_safe_relative(rule) || !to_utf8(rule)) {
        throw usage_error(L"a rule is a folder below a user's profile, such as Documents, not '" + rule +
                          L"'");
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
    const auto rule = call.words.take_value(L"--rule");
    if (rule) {
        call.words.expect_end();
        return protect_rule(call, *rule);
    }
    const std::wstring object_path = call.words.take_value(L"--as").value_or(L"");
    if (!to_utf8(object_path)) {
        throw usage_error(L"no object path: " + object_path);
    }
    const std::wstring path = path_from_word(call.words.take_word(L"a folder, or a --rule"));
    call.words.expect_end();
    problems left_out;
    const DWORD error = protect(call.store, path, object_path, left_out);
    return finish_change(call, error, left_out);
}

int command_unprotect(command_call& call) {
    const auto rule = call.words.take_value(L"--rule");
    if (rule) {
        call.words.expect_end();
        return unprotect_rule(call, *rule);
    }
    const std::wstring path = path_from_word(call.words.take_word(L"a folder, or a --rule"));
    call.words.expect_end();
    return finish_change(call, unprotect(call.store, path));
}

int command_restore_point(command_call& call) {
    call.words.expect_end();
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
