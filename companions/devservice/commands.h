#pragma once

#include <optional>
#include <string>
#include <vector>

#include "companions/devservice/problem.h"
#include "companions/devservice/vault.h"

namespace ov::devservice {

/// Exit codes of orvsvc.exe.
enum exit_code : int {
    exit_done = 0,
    exit_failed = 1,
    exit_usage = 2,
    exit_absent = 3,   // the driver, or the running service that the command is about, is not there
    exit_partial = 4,  // done but for some files, which were named
};

/// A command with the words that follow it. A command works on the state file, so it acts the same whether a
/// service runs or not; a running service is told.
struct command_call {
    vault& store;
    std::vector<std::wstring> words;
};

[[nodiscard]] int command_protect(command_call& call);
[[nodiscard]] int command_unprotect(command_call& call);
[[nodiscard]] int command_restore_point(command_call& call);
[[nodiscard]] int command_flags(command_call& call);
[[nodiscard]] int command_cloud(command_call& call);
[[nodiscard]] int command_mgmt(command_call& call);
[[nodiscard]] int command_document(command_call& call);
[[nodiscard]] int command_list(command_call& call);
[[nodiscard]] int command_stop(command_call& call);
[[nodiscard]] int command_run(command_call& call);
[[nodiscard]] int command_service(command_call& call);

/// For the commands: takes "NAME VALUE" out of the words. True when it was there with a value; `value` is
/// untouched otherwise.
[[nodiscard]] bool take_option(std::vector<std::wstring>& words, const wchar_t* name, std::wstring& value);
/// The same for an option without a value.
[[nodiscard]] bool take_switch(std::vector<std::wstring>& words, const wchar_t* name);

/// For the commands: reports what does not parse, and a change's outcome, and tells a running service.
[[nodiscard]] int bad_usage(const std::string& what);
[[nodiscard]] int finish_change(command_call& call, DWORD error, const problems& left_out = {});

/// A path from the command line, which may be relative; none after saying that it is no path.
[[nodiscard]] std::optional<std::wstring> path_from_word(const std::wstring& word);

}  // namespace ov::devservice
